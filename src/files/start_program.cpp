// SPDX-License-Identifier: MIT
#include "files/start_program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cerrno>
#include <climits>
#include <csignal>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/system_error.h"

namespace {

constexpr int kLowPriority = 8;  // 0 is ours
// A sixtieth of a processor beside one of our threads. With what the system calls idle it would be a tenth of that, and a
// view that plays would never see a picture.
constexpr int kLastPriority = 19;

using CEnvironment = std::vector<std::string>;

std::optional<CEnvironment>& KeptEnvironment() {
    static std::optional<CEnvironment> kept;
    return kept;
}

CEnvironment CurrentEnvironment() {
    CEnvironment current;
    for (char** variable = environ; *variable != nullptr; ++variable) current.emplace_back(*variable);
    return current;
}

std::string_view ValueOf(const CEnvironment& environment, std::string_view name) {
    for (const std::string& variable : environment) {
        const std::string_view text(variable);
        if (text.starts_with(name) && text.substr(name.size()).starts_with('='))
            return text.substr(name.size() + 1);
    }
    return {};
}

/** The program's path. A folder of $PATH that is not absolute is passed over: the program's working folder
 * may be a stranger's. */
CResult<std::string> PathOfProgram(const std::string& name, std::string_view searchPath) {
    if (name.find('/') != name.npos) return name;
    if (searchPath.empty()) searchPath = "/usr/local/bin:/usr/bin:/bin";
    while (!searchPath.empty()) {
        const std::size_t end = std::min(searchPath.find(':'), searchPath.size());
        const std::string path = file_util_ex::MakePath(searchPath.substr(0, end), name);
        if (path.front() == '/' && ::access(path.c_str(), X_OK) == 0 && file_util_ex::DoesFileExist(path))
            return path;
        searchPath.remove_prefix(std::min(end + 1, searchPath.size()));
    }
    return CError{EErrorCode::NotFound, lng::Mark("this program is not installed"), name};
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

struct CPipe {
    CFileDescriptor read, write;
};

std::optional<CPipe> MakePipe(CFileDescriptor CPipe::*ourEnd) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
    CPipe made{CFileDescriptor(ends[0]), CFileDescriptor(ends[1])};
    (void)::fcntl((made.*ourEnd).Get(), F_SETFL, O_NONBLOCK);
    return made;
}

/** How the new process is set up before its program runs. */
class CSpawnPlan {
  public:
    CSpawnPlan() {
        (void)::posix_spawn_file_actions_init(&m_actions);
        (void)::posix_spawnattr_init(&m_attributes);
    }
    CSpawnPlan(const CSpawnPlan&) = delete;
    CSpawnPlan& operator=(const CSpawnPlan&) = delete;
    ~CSpawnPlan() {
        (void)::posix_spawn_file_actions_destroy(&m_actions);
        (void)::posix_spawnattr_destroy(&m_attributes);
    }

    void SetStreams(int input, int output, int errors) {
        input < 0 ? Open(STDIN_FILENO, O_RDONLY) : Copy(input, STDIN_FILENO);
        output < 0 ? Open(STDOUT_FILENO, O_WRONLY) : Copy(output, STDOUT_FILENO);
        errors < 0 ? Open(STDERR_FILENO, O_WRONLY) : Copy(errors, STDERR_FILENO);
        (void)::posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
    }
    void SetFolder(const std::string& folder) {
        (void)::posix_spawn_file_actions_addchdir_np(&m_actions, folder.c_str());
    }
    /** No signal is blocked or ignored in it. */
    void SetSignals(bool ownSession) {
        sigset_t none, all;
        ::sigemptyset(&none);
        ::sigfillset(&all);
        (void)::posix_spawnattr_setsigmask(&m_attributes, &none);
        (void)::posix_spawnattr_setsigdefault(&m_attributes, &all);
        const int session = ownSession ? POSIX_SPAWN_SETSID : 0;
        (void)::posix_spawnattr_setflags(
            &m_attributes, static_cast<short>(session | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
    }
    /** 0, or the errno value of what failed. */
    [[nodiscard]] int Run(pid_t& child, const std::string& path, CEnvironment& arguments,
                          CEnvironment& environment) const {
        return ::posix_spawn(&child, path.c_str(), &m_actions, &m_attributes, Pointers(arguments).data(),
                             Pointers(environment).data());
    }

  private:
    void Open(int stream, int flags) {
        (void)::posix_spawn_file_actions_addopen(&m_actions, stream, "/dev/null", flags, 0);
    }
    void Copy(int from, int stream) { (void)::posix_spawn_file_actions_adddup2(&m_actions, from, stream); }

    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

void ReadWhatIsThere(CFileDescriptor& from, std::string& into, std::size_t maxBytes) {
    constexpr int kMaxReads = 256;  // a program that never stops writing must not block us
    std::array<char, 4096> buffer{};
    for (int i = 0; i < kMaxReads && from.IsOpen(); ++i) {
        const ssize_t got = ::read(from.Get(), buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        if (into.size() < maxBytes) into.append(buffer.data(), static_cast<std::size_t>(got));
    }
}

}  // namespace

CUserEnvironment::CUserEnvironment() {
    CEnvironment environment = CurrentEnvironment();
    // Each is valid for a single program start, which was this process's own.
    std::erase_if(environment, [](const std::string& variable) {
        return variable.starts_with("DESKTOP_STARTUP_ID=") || variable.starts_with("XDG_ACTIVATION_TOKEN=");
    });
    KeptEnvironment() = std::move(environment);
}

CUserEnvironment::~CUserEnvironment() {
    KeptEnvironment().reset();
}

std::vector<std::string> UsersEnvironment() {
    return KeptEnvironment() ? *KeptEnvironment() : CurrentEnvironment();
}

bool IsProgramInstalled(const std::string& name) {
    return PathOfProgram(name, ValueOf(UsersEnvironment(), "PATH")).HasValue();
}

CResult<CStartedProgram> StartProgram(const CProgramToStart& what) {
    CEnvironment environment = UsersEnvironment();
    const CResult<std::string> path = PathOfProgram(what.program, ValueOf(environment, "PATH"));
    if (!path) return path.Error();
    for (const std::string& variable : what.variables) {
        const std::string name = variable.substr(0, variable.find('=') + 1);
        std::erase_if(environment, [&name](const std::string& other) { return other.starts_with(name); });
        environment.push_back(variable);
    }

    CSpawnPlan plan;
    std::optional<CPipe> input, output, errors;
    if (what.isHelper) {
        output = MakePipe(&CPipe::read);
        errors = MakePipe(&CPipe::read);
        if (what.takesInput) input = MakePipe(&CPipe::write);
        if (!output || !errors || (what.takesInput && !input))
            return CError{EErrorCode::Unreadable, SystemErrorText(errno), what.program};
        plan.SetStreams(input ? input->read.Get() : -1, output->write.Get(), errors->write.Get());
    } else {
        plan.SetStreams(-1, -1, -1);
    }
    if (file_util_ex::DoesFolderExist(what.folder)) plan.SetFolder(what.folder);
    plan.SetSignals(!what.isHelper);

    std::vector<std::string> arguments{what.program};
    arguments.insert(arguments.end(), what.arguments.begin(), what.arguments.end());
    CStartedProgram started;
    if (const int failed = plan.Run(started.m_pid, path.Value(), arguments, environment); failed != 0) {
        started.m_pid = -1;
        if (failed == ENOENT)
            return CError{EErrorCode::NotFound, lng::Mark("this program is not installed"), what.program};
        return CError{EErrorCode::Unreadable, SystemErrorText(failed), what.program};
    }
    if (what.isHelper) {
        (void)::setpriority(PRIO_PROCESS, static_cast<id_t>(started.m_pid),
                            what.isLast ? kLastPriority : kLowPriority);
        if (input) started.m_input = std::move(input->write);
        started.m_output = std::move(output->read);
        started.m_errors = std::move(errors->read);
    }
    return started;
}

CStartedProgram::CStartedProgram(CStartedProgram&& other) noexcept
    : m_pid(std::exchange(other.m_pid, -1)),
      m_exitCode(other.m_exitCode),
      m_input(std::move(other.m_input)),
      m_output(std::move(other.m_output)),
      m_errors(std::move(other.m_errors)) {}

CStartedProgram::~CStartedProgram() {
    if (m_pid < 0 || ExitCode()) return;
    try {
        std::thread([pid = m_pid] { (void)::waitpid(pid, nullptr, 0); }).detach();
    } catch (const std::system_error&) {
        return;  // once it has ended, its entry is removed when this process ends
    }
}

void CStartedProgram::ReadOutput(std::string& output, std::string& errors, std::size_t maxBytes) {
    ReadWhatIsThere(m_output, output, maxBytes);
    ReadWhatIsThere(m_errors, errors, maxBytes);
}

bool CStartedProgram::WriteInput(std::string_view bytes) {
    // So few that they are taken as a whole or not at all. The signal for an ended reader is for this thread alone.
    assert(bytes.size() <= PIPE_BUF);
    sigset_t pipe, before;
    ::sigemptyset(&pipe);
    ::sigaddset(&pipe, SIGPIPE);
    (void)::pthread_sigmask(SIG_BLOCK, &pipe, &before);
    const ssize_t put = ::write(m_input.Get(), bytes.data(), bytes.size());
    const timespec now{};
    if (put < 0 && errno == EPIPE) (void)::sigtimedwait(&pipe, nullptr, &now);
    (void)::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return put == static_cast<ssize_t>(bytes.size());
}

std::optional<int> CStartedProgram::ExitCode() {
    if (m_exitCode || m_pid < 0) return m_exitCode;
    int status = 0;
    const pid_t ended = ::waitpid(m_pid, &status, WNOHANG);
    if (ended == m_pid) m_exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    // Not known where our parent process made the system reap ended processes by itself.
    if (ended < 0 && errno == ECHILD) m_exitCode = 0;
    return m_exitCode;
}

std::optional<int> CStartedProgram::WaitForEnd(std::chrono::milliseconds limit) {
    constexpr std::chrono::milliseconds kBetweenLooks(10);
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!ExitCode() && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(kBetweenLooks);
    return m_exitCode;
}

void CStartedProgram::Kill() {
    if (m_pid > 0 && !ExitCode()) (void)::kill(m_pid, SIGKILL);
}
