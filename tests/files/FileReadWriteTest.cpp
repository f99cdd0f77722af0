// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "error_code_of.h"
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
    for (const std::size_t size : {0U, 1U, 262143U, 262144U, 262145U, 1000003U, 12000001U}) {
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
    EXPECT_EQ(ReadWholeFile("/dev/zero", 1ULL << 40).Error().code, EErrorCode::TooLarge);
    EXPECT_LE(ReadWholeFile(folder.Add("empty", "")).Value().capacity(), 4096U) << "a folder may hold many";
    EXPECT_NE(CTestFolder::TextOf(ReadWholeFile("/proc/self/status").Value()).find("Pid:"),
              std::string::npos);
}

TEST(ReadWholeFileTest, StopsWhereTheFirstBytesAreNotWanted) {
    const CTestFolder folder;
    std::vector<std::size_t> asked;
    bool wanted = false;
    const auto wants = [&](std::span<const std::byte> first) {
        asked.push_back(first.size());
        return wanted;
    };
    const auto bytes = ReadWholeFile("/dev/zero", 1 << 30, wants);
    ASSERT_TRUE(bytes);
    EXPECT_GE(bytes.Value().size(), 4096U);
    EXPECT_EQ(asked, std::vector{bytes.Value().size()});
    EXPECT_TRUE(ReadWholeFile(folder.Add("empty", ""), 0, wants));
    EXPECT_EQ(asked.size(), 1U) << "nothing is no beginning";
    const std::string big = folder.Add("big", std::string(1000003, 'x'));
    EXPECT_LT(ReadWholeFile(big, 1 << 30, wants).Value().size(), 1000003U);
    wanted = true;
    EXPECT_EQ(ReadWholeFile(big, 1 << 30, wants).Value().size(), 1000003U);
    EXPECT_EQ(asked.size(), 3U);
}

TEST(ReadWholeFileTest, ReadsASlowPipeToItsEnd) {
    FILE* pipe = ::popen("printf one; sleep 0.05; printf two", "r");
    const auto bytes = ReadWholeFile("/proc/self/fd/" + std::to_string(::fileno(pipe)));
    ::pclose(pipe);
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

// Where the file system has no files without names, the temporary one stays.
TEST(AtomicFileTest, LeavesNoPartWhenTheProcessIsKilled) {
    const CTestFolder folder;
    const int nameless = ::open(folder.Path().c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0600);
    if (nameless >= 0) ::close(nameless);
    const auto writeAndDie = [&] {
        auto file = CAtomicFile::Create(folder / "file");
        if (file && file.Value().Write(std::string(200000, 'a'))) ::raise(SIGKILL);
        ::_exit(1);
    };
    EXPECT_EXIT(writeAndDie(), testing::KilledBySignal(SIGKILL), "");
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

TEST(AtomicFileTest, AFailedWriteLeavesTheOldFileAndNothingElse) {
    const CTestFolder folder;
    const std::string path = folder.Add("file", "old");
    {
        const CFileSizeLimit limit(100000);
        const CStatus written = WriteFileAtomically(path, std::string(200000, 'n'));
        ASSERT_EQ(CodeOf(written), EErrorCode::WriteFailed);
        EXPECT_EQ(written.Error().where, path);
        auto file = CAtomicFile::Create(path);
        EXPECT_FALSE(file.Value().Write(std::string(200000, 'a')));
        EXPECT_FALSE(file.Value().Write("more")) << "the error stays";
        EXPECT_FALSE(file.Value().Commit());
    }
    EXPECT_EQ(CTestFolder::TextOf(path), "old");
    EXPECT_EQ(folder.Count(), 1U);
}

TEST(AtomicFileTest, GathersSmallWritesInOrderAndShowsThemOnlyAtCommit) {
    const CTestFolder folder;
    std::string expected;
    CAtomicFile file = CAtomicFile::Create(folder / "file").Value();
    for (int i = 0; i < 30000; ++i) {
        const std::string line = i == 20000 ? std::string(100000, 'x') : std::to_string(i) + "\n";
        expected += line;
        ASSERT_TRUE(file.Write(line));
    }
    EXPECT_EQ(folder.Count(), 0U);
    ASSERT_TRUE(file.Commit());
    { ASSERT_TRUE(CAtomicFile::Create(folder / "forgotten").Value().Write("x")); }
    EXPECT_EQ(folder.Count(), 1U);
    EXPECT_FALSE(file.Commit()) << "a second commit would be a mistake of ours";
    EXPECT_TRUE(CTestFolder::TextOf(folder / "file") == expected);
}

TEST(AtomicFileTest, RefusesWhatItCannotReplace) {
    const CTestFolder folder;
    fs::create_symlink("loop", folder / "loop");
    for (const std::string& path :
         {folder.Path(), folder / "none/file", folder / "loop", std::string("/dev/null"), std::string()})
        EXPECT_FALSE(WriteFileAtomically(path, "x")) << path;
    EXPECT_TRUE(WriteFileAtomically(folder / std::string(255, 'n'), "x")) << "the longest name";
}
