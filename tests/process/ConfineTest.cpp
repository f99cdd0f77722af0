// SPDX-License-Identifier: MIT
#include "process/confine.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <thread>

#include "files/CTestFolder.h"
#include "row_name.h"
#include "sanitized.h"

namespace {

/** errno of a call that failed; 0 for one that succeeded. */
template <class T>
int Error(T result) {
    return result == static_cast<T>(-1) ? errno : 0;
}
int OpenError(const std::string& path, int flags) {
    return Error(::open(path.c_str(), flags, 0600));
}
int WriteMuch(const std::string& path) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT, 0600);
    const std::string block(64 << 10, 'x');
    for (int i = 0; i < 100; ++i) {
        if (::write(file, block.data(), block.size()) < 0) return errno;
    }
    return 0;
}
int OpenMany() {
    for (int i = 0; i < 1000; ++i) {
        if (::dup(STDERR_FILENO) < 0) return errno;
    }
    return 0;
}
int Spawn() {
    char program[] = "/bin/true";
    char* arguments[] = {program, nullptr};
    pid_t child = 0;
    return ::posix_spawn(&child, program, nullptr, nullptr, arguments, nullptr);
}
int StartThread() {
    int seen = 1;
    std::thread([&seen] { seen = 0; }).join();
    return seen;
}
[[noreturn]] int Spin() {
    for (std::atomic<unsigned> turns = 0;;) ++turns;
}

enum class ENeeds { Limits, SystemCalls, Files };

struct CProbe {
    const char* name;
    ENeeds needs;
    int (*attempt)(const std::string& folder);  ///< holds the folders "read", "list", "write" and "else"
    int expected;                               ///< errno; a signal's number and 1000
};

const CProbe kProbes[] = {
    {"Internet", ENeeds::SystemCalls, [](auto&) { return Error(::socket(AF_INET, SOCK_STREAM, 0)); }, EPERM},
    {"Internet6", ENeeds::SystemCalls, [](auto&) { return Error(::socket(AF_INET6, SOCK_DGRAM, 0)); }, EPERM},
    {"LocalSocket", ENeeds::SystemCalls, [](auto&) { return Error(::socket(AF_UNIX, SOCK_STREAM, 0)); },
     EPERM},
    {"Kernel", ENeeds::SystemCalls, [](auto&) { return Error(::socket(AF_NETLINK, SOCK_RAW, 0)); }, EPERM},
    {"Exec", ENeeds::SystemCalls, [](auto&) { return Error(::execl("/bin/true", "true", nullptr)); }, EPERM},
    {"Fork", ENeeds::SystemCalls, [](auto&) { return Error(::fork()); }, EPERM},
    {"Spawn", ENeeds::SystemCalls, [](auto&) { return Spawn(); }, EPERM},
    {"KillParent", ENeeds::SystemCalls, [](auto&) { return Error(::kill(::getppid(), 0)); }, EPERM},
    {"LookIntoParent", ENeeds::SystemCalls,
     [](auto&) { return Error(::ptrace(PTRACE_ATTACH, ::getppid(), nullptr, nullptr)); }, EPERM},
    {"ChangeRights", ENeeds::SystemCalls,
     [](auto& f) { return Error(::chmod((f + "/write").c_str(), 0777)); }, EPERM},
    {"Thread", ENeeds::SystemCalls, [](auto&) { return StartThread(); }, 0},
    {"Abort", ENeeds::SystemCalls, [](auto&) { return std::abort(), 0; }, 1000 + SIGABRT},
    {"ReadWhatIsNeeded", ENeeds::Files, [](auto& f) { return OpenError(f + "/read/a", O_RDONLY); }, 0},
    {"ReadAParent", ENeeds::Files, [](auto& f) { return OpenError(f + "/else/../else/a", O_RDONLY); },
     EACCES},
    {"ReadElsewhere", ENeeds::Files, [](auto& f) { return OpenError(f + "/else/a", O_RDONLY); }, EACCES},
    {"ReadByALink", ENeeds::Files, [](auto& f) { return OpenError(f + "/read/link", O_RDONLY); }, EACCES},
    {"ReadPasswords", ENeeds::Files, [](auto&) { return OpenError("/etc/passwd", O_RDONLY); }, EACCES},
    {"ReadTheParentsMemory", ENeeds::Files,
     [](auto&) { return OpenError("/proc/" + std::to_string(::getppid()) + "/environ", O_RDONLY); }, EACCES},
    {"ListWhatIsListed", ENeeds::Files,
     [](auto& f) { return OpenError(f + "/list", O_RDONLY | O_DIRECTORY); }, 0},
    {"ReadWhatIsListed", ENeeds::Files, [](auto& f) { return OpenError(f + "/list/a", O_RDONLY); }, EACCES},
    {"LoadALibrary", ENeeds::Files, [](auto&) { return OpenError("/usr/lib/os-release", O_RDONLY); }, 0},
    {"WriteWhereItMay", ENeeds::Files,
     [](auto& f) { return OpenError(f + "/write/new", O_WRONLY | O_CREAT); }, 0},
    {"WriteWhatItReads", ENeeds::Files, [](auto& f) { return OpenError(f + "/read/a", O_WRONLY); }, EACCES},
    {"WriteElsewhere", ENeeds::Files, [](auto& f) { return OpenError(f + "/else/new", O_WRONLY | O_CREAT); },
     EACCES},
    {"EmptyElsewhere", ENeeds::Files, [](auto& f) { return Error(::truncate((f + "/else/a").c_str(), 0)); },
     EACCES},
    {"DeleteElsewhere", ENeeds::Files, [](auto& f) { return Error(::unlink((f + "/else/a").c_str())); },
     EACCES},
    {"PlantALink", ENeeds::Files, [](auto& f) { return Error(::symlink("/", (f + "/write/x").c_str())); },
     EACCES},
    {"GrowAFile", ENeeds::Limits, [](auto& f) { return WriteMuch(f + "/write/large"); }, EFBIG},
    {"OpenManyFiles", ENeeds::Limits, [](auto&) { return OpenMany(); }, EMFILE},
    {"RunLong", ENeeds::Limits, [](auto&) { return Spin(); }, 1000 + SIGKILL},
    {"Grow", ENeeds::Limits,
     [](auto&) {
         void* block = ::mmap(nullptr, 512 << 20, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
         return Error(reinterpret_cast<std::intptr_t>(block));
     },
     ENOMEM},
};

class Confined : public testing::TestWithParam<CProbe> {};

int RunConfined(const CProbe& probe, const std::string& folder) {
    CConfinement confinement;
    confinement.limits = {kSanitized ? 0ULL : 256ULL << 20, 1, 1 << 20, 64};
    confinement.files = {{folder + "/read"}, {folder + "/list"}, {folder + "/write"}};
    const CConfined done = ConfineProcess(confinement);
    const bool holds = probe.needs == ENeeds::Limits  ? done.limits
                       : probe.needs == ENeeds::Files ? done.files
                                                      : done.systemCalls;
    return holds ? probe.attempt(folder) : 255;
}

TEST_P(Confined, CanDoNoMoreThanItMust) {
    const CTestFolder folder;
    for (const char* name : {"read", "list", "write", "else"}) {
        std::filesystem::create_directory(folder / name);
        (void)folder.Add(std::string(name) + "/a", "text");
    }
    std::filesystem::create_symlink("../else/a", folder / "read/link");
    if (kSanitized && std::string_view(GetParam().name) == "Grow")
        GTEST_SKIP() << "the sanitizer's own memory";
    const pid_t child = ::fork();
    if (child == 0) ::_exit(RunConfined(GetParam(), folder.Path()));
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    const int outcome = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
    if (outcome == 255) GTEST_SKIP() << "this system cannot do that";
    EXPECT_EQ(outcome, GetParam().expected);
    EXPECT_EQ(CTestFolder::TextOf(folder / "else/a"), "text");
}
INSTANTIATE_TEST_SUITE_P(Process, Confined, testing::ValuesIn(kProbes), kRowName);

}  // namespace
