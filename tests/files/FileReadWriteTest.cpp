// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "files/CAtomicFile.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"

namespace fs = std::filesystem;
using file_util_ex::ReadWholeFile;
using file_util_ex::WriteFileAtomically;

namespace {

// While it lives, no file of this process may grow beyond the limit.
class CFileSizeLimit {
  public:
    explicit CFileSizeLimit(rlim_t bytes) : m_handler(::signal(SIGXFSZ, SIG_IGN)) {
        EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &m_before), 0);
        const rlimit limit = {bytes, m_before.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~CFileSizeLimit() {
        (void)::setrlimit(RLIMIT_FSIZE, &m_before);
        (void)::signal(SIGXFSZ, m_handler);
    }

  private:
    rlimit m_before = {};
    sighandler_t m_handler;
};

}  // namespace

TEST(ReadWholeFileTest, GivesAllBytesOfEverySize) {
    const CTestFolder folder;
    for (const std::size_t size : {0U, 1U, 262143U, 262144U, 262145U, 1000003U}) {
        std::string text(size, ' ');
        for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>(i * 7 + i / 251);
        const auto bytes = ReadWholeFile(folder.Add("file", text), size);
        ASSERT_TRUE(bytes) << size;
        EXPECT_TRUE(CTestFolder::TextOf(bytes.Value()) == text) << size;
    }
}

TEST(ReadWholeFileTest, SaysWhyNotAndStopsAtTheLimit) {
    const CTestFolder folder;
    EXPECT_EQ(ReadWholeFile(folder / "none").Error().code, EErrorCode::NotFound);
    EXPECT_EQ(ReadWholeFile(folder / "none").Error().where, folder / "none");
    EXPECT_EQ(ReadWholeFile(folder.Path()).Error().code, EErrorCode::Unreadable);
    EXPECT_EQ(ReadWholeFile(folder.Add("five", "12345"), 4).Error().code, EErrorCode::TooLarge);
    EXPECT_EQ(ReadWholeFile("/dev/zero", 1 << 20).Error().code, EErrorCode::TooLarge);
    EXPECT_NE(CTestFolder::TextOf(ReadWholeFile("/proc/self/status").Value()).find("Pid:"),
              std::string::npos);
}

TEST(ReadWholeFileTest, StopsWhereTheFirstBytesAreNotWanted) {
    const CTestFolder folder;
    std::vector<std::size_t> asked;
    const auto wants = [&](bool rest) {
        return [&asked, rest](std::span<const std::byte> first) {
            asked.push_back(first.size());
            return rest;
        };
    };
    for (const std::string& path : {std::string("/dev/zero"), folder.Add("big", std::string(1000003, 'x'))}) {
        const auto bytes = ReadWholeFile(path, 1 << 30, wants(false));
        ASSERT_TRUE(bytes) << path;
        EXPECT_GE(bytes.Value().size(), 4096U) << path;
        EXPECT_LT(bytes.Value().size(), 1000003U) << path;
        EXPECT_EQ(asked, std::vector{bytes.Value().size()}) << path;
        asked.clear();
    }
    EXPECT_EQ(ReadWholeFile(folder / "big", 1 << 30, wants(true)).Value().size(), 1000003U);
    EXPECT_EQ(asked.size(), 1U);
    EXPECT_TRUE(ReadWholeFile(folder.Add("empty", ""), 0, wants(false)));
    EXPECT_EQ(asked.size(), 1U) << "nothing is no beginning";
}

TEST(ReadWholeFileTest, ReadsASlowPipeToItsEnd) {
    int ends[2] = {};
    ASSERT_EQ(::pipe(ends), 0);
    std::thread writer([fd = ends[1]] {
        EXPECT_EQ(::write(fd, "one", 3), 3);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_EQ(::write(fd, "two", 3), 3);
        ::close(fd);
    });
    const auto bytes = ReadWholeFile("/proc/self/fd/" + std::to_string(ends[0]));
    writer.join();
    ::close(ends[0]);
    ASSERT_TRUE(bytes) << bytes.Error().Text();
    EXPECT_EQ(CTestFolder::TextOf(bytes.Value()), "onetwo");
}

TEST(AtomicFileTest, ReplacesTheContentAndKeepsPermissionsOrGivesTheUsual) {
    const CTestFolder folder;
    const std::string path = folder.Add("file", "old"), text(300000, 'n');
    ASSERT_EQ(::chmod(path.c_str(), 0604), 0);
    const mode_t before = ::umask(027);
    EXPECT_TRUE(WriteFileAtomically(path, text));
    EXPECT_TRUE(WriteFileAtomically(folder / "new", "x"));
    ::umask(before);
    EXPECT_TRUE(CTestFolder::TextOf(path) == text);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0604));
    EXPECT_EQ(fs::status(folder / "new").permissions(), fs::perms(0640));
    EXPECT_EQ(folder.Count(), 2U);
}

TEST(AtomicFileTest, AFailedWriteLeavesTheOldFileAndNothingElse) {
    const CTestFolder folder;
    const std::string path = folder.Add("file", "old");
    {
        const CFileSizeLimit limit(100000);
        const CStatus written = WriteFileAtomically(path, std::string(200000, 'n'));
        ASSERT_FALSE(written);
        EXPECT_EQ(written.Error().code, EErrorCode::WriteFailed);
        EXPECT_EQ(written.Error().where, path);
    }
    EXPECT_EQ(CTestFolder::TextOf(path), "old");
    EXPECT_EQ(folder.Count(), 1U);
}

TEST(AtomicFileTest, AnErrorStaysUntilCommit) {
    const CTestFolder folder;
    const CFileSizeLimit limit(70000);
    auto file = CAtomicFile::Create(folder / "file");
    ASSERT_TRUE(file);
    bool failed = false;
    for (int i = 0; i < 200 && !failed; ++i) failed = !file.Value().Write(std::string(1000, 'a'));
    EXPECT_TRUE(failed);
    EXPECT_FALSE(file.Value().Write("more"));
    EXPECT_FALSE(file.Value().Commit());
    EXPECT_EQ(folder.Count(), 0U);
}

TEST(AtomicFileTest, GathersSmallWritesInOrderAndShowsThemOnlyAtCommit) {
    const CTestFolder folder;
    std::string expected;
    auto created = CAtomicFile::Create(folder / "file");
    ASSERT_TRUE(created);
    CAtomicFile file = std::move(created).Value();
    for (int i = 0; i < 30000; ++i) {
        const std::string line = i == 20000 ? std::string(100000, 'x') : std::to_string(i) + "\n";
        expected += line;
        ASSERT_TRUE(file.Write(line));
    }
    EXPECT_FALSE(fs::exists(folder / "file"));
    ASSERT_TRUE(file.Commit());
    { ASSERT_TRUE(CAtomicFile::Create(folder / "forgotten").Value().Write("x")); }
    EXPECT_EQ(folder.Count(), 1U);
    EXPECT_TRUE(CTestFolder::TextOf(folder / "file") == expected);
    EXPECT_FALSE(file.Commit()) << "a second commit would be a mistake of ours";
    EXPECT_TRUE(CTestFolder::TextOf(folder / "file") == expected);
}

// Where the file system has no files without names, the temporary one stays.
TEST(AtomicFileTest, LeavesNoPartWhenTheProcessIsKilled) {
    const CTestFolder folder;
    const int nameless = ::open(folder.Path().c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0600);
    if (nameless >= 0) ::close(nameless);
    const pid_t child = ::fork();
    if (child == 0) {
        auto file = CAtomicFile::Create(folder / "file");
        if (file && file.Value().Write(std::string(200000, 'a'))) ::raise(SIGKILL);
        ::_exit(1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status)) << "it could not even write";
    EXPECT_FALSE(fs::exists(folder / "file"));
    EXPECT_EQ(folder.Count(), nameless >= 0 ? 0U : 1U);
}

TEST(AtomicFileTest, WritesThroughALinkAlsoToAFileThatIsNotThereYet) {
    const CTestFolder folder;
    ASSERT_TRUE(file_util_ex::Mkdir(folder / "real"));
    fs::create_symlink("real/data", folder / "link");
    for (const char* text : {"one", "two"}) {
        ASSERT_TRUE(WriteFileAtomically(folder / "link", text));
        EXPECT_EQ(CTestFolder::TextOf(folder / "real/data"), text);
        EXPECT_TRUE(fs::is_symlink(folder / "link"));
    }
}

TEST(AtomicFileTest, RefusesWhatItCannotReplace) {
    const CTestFolder folder;
    EXPECT_FALSE(WriteFileAtomically(folder.Path(), "x"));
    EXPECT_FALSE(WriteFileAtomically(folder / "none/file", "x"));
    EXPECT_FALSE(WriteFileAtomically("/dev/null", "x"));
    EXPECT_EQ(WriteFileAtomically("", "x").Error().code, EErrorCode::BadArgument);
    fs::create_symlink("loop", folder / "loop");
    EXPECT_FALSE(WriteFileAtomically(folder / "loop", "x"));
    const std::string longName(255, 'n');
    EXPECT_TRUE(WriteFileAtomically(folder / longName, "x"));
}
