// SPDX-License-Identifier: MIT
#include "files/CFilesBeside.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "bytes_of.h"
#include "files/CTestFolder.h"
#include "row_name.h"

namespace fs = std::filesystem;

namespace {

/** One export of a picture; "" where it fails. */
std::string Export(const CTestFolder& folder, std::string_view text,
                   const std::function<void()>& meanwhile = {}) {
    CFilesBeside files(folder / "s.pov");
    const auto name = files.ChooseName("s-t", ".png");
    if (!name) return {};
    if (meanwhile) meanwhile();
    if (!files.Write(name.Value(), BytesOf(text))) return {};
    std::string record;
    for (const std::string& line : files.ToRecord()) record += "// " + line + "\n";
    if (!files.TakeFiles().Commit()) return {};
    (void)folder.Add("s.pov", record);
    return name.Value();
}

struct CCase {
    const char* name;
    void (*plant)(const CTestFolder&, const std::string& path);
    bool isOurs;  ///< the name may be used
};
const CCase kCases[] = {
    {"Nothing", [](auto&, auto&) {}, true},
    {"ForeignFile", [](auto& f, auto&) { (void)f.Add("s-t0.png", "foreign"); }, false},
    {"Link", [](auto&, auto& path) { fs::create_symlink("victim", path); }, false},
    {"DanglingLink", [](auto&, auto& path) { fs::create_symlink("nowhere", path); }, false},
    {"HardLink", [](auto& f, auto& path) { fs::create_hard_link(f / "victim", path); }, false},
    {"Folder", [](auto&, auto& path) { fs::create_directory(path); }, false},
    {"Pipe", [](auto&, auto& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); }, false},
    {"OfAnEarlierExport", [](auto& f, auto&) { EXPECT_EQ(Export(f, "earlier"), "s-t0.png"); }, true},
    {"OfTheSameExport", [](auto& f, auto&) { EXPECT_EQ(Export(f, "picture"), "s-t0.png"); }, true},
    {"PaintedOverSince",
     [](auto& f, auto&) {
         EXPECT_EQ(Export(f, "earlier"), "s-t0.png");
         (void)f.Add("s-t0.png", "painted");
     },
     false},
    {"LinkToAnEarlierOne",
     [](auto& f, auto& path) {
         EXPECT_EQ(Export(f, "earlier"), "s-t0.png");
         fs::rename(path, f / "moved");
         fs::create_symlink("moved", path);
     },
     false},
    {"RecordOfAnother",
     [](auto& f, auto&) {
         (void)f.Add("s-t0.png", "foreign");
         (void)f.Add("s.pov",
                     "// orbivue-file: s-t0.png 7 0\n// orbivue-file: \n// orbivue-file: ../victim 4 1");
     },
     false},
};

class FilesBeside : public testing::TestWithParam<CCase> {
  protected:
    FilesBeside() {
        (void)m_folder.Add("victim", "mine");
        GetParam().plant(m_folder, m_folder / "s-t0.png");
    }
    CTestFolder m_folder;
};

TEST_P(FilesBeside, ReplacesOnlyItsOwn) {
    struct stat before {
    }, after{};
    const bool wasThere = ::lstat((m_folder / "s-t0.png").c_str(), &before) == 0;
    const std::string name = Export(m_folder, "picture");
    EXPECT_EQ(name, GetParam().isOurs ? "s-t0.png" : "s-t1000.png");
    EXPECT_EQ(CTestFolder::TextOf(m_folder / name), "picture");
    EXPECT_EQ(CTestFolder::TextOf(m_folder / "victim"), "mine");
    if (!GetParam().isOurs && wasThere) {
        ASSERT_EQ(::lstat((m_folder / "s-t0.png").c_str(), &after), 0);
        EXPECT_EQ(after.st_ino, before.st_ino);
    }
    const std::size_t count = m_folder.Count();
    EXPECT_EQ(Export(m_folder, "another"), name) << "the next export takes its own name again";
    EXPECT_EQ(m_folder.Count(), count);
}

TEST_P(FilesBeside, FollowsNoLinkThatIsPutThereMeanwhile) {
    std::string planted;
    const std::string name = Export(m_folder, "picture", [&] {
        CFilesBeside asked(m_folder / "s.pov");
        planted = m_folder / asked.ChooseName("s-t", ".png").Value();
        fs::remove(planted);
        fs::create_symlink("victim", planted);
    });
    EXPECT_EQ(name, "");
    EXPECT_TRUE(fs::is_symlink(planted));
    EXPECT_EQ(CTestFolder::TextOf(m_folder / "victim"), "mine");
}
INSTANTIATE_TEST_SUITE_P(CFilesBeside, FilesBeside, testing::ValuesIn(kCases), kRowName);

TEST(CFilesBesideTest, HoldsFewFilesOpen) {
    const CTestFolder folder;
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit few{64, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    {
        CFilesBeside files(folder / "s.pov");
        for (int i = 0; i < 200; ++i)
            ASSERT_TRUE(files.Write(files.ChooseName("s-t", ".png").Value(), BytesOf(std::to_string(i))));
        EXPECT_TRUE(files.TakeFiles().Commit());
    }
    EXPECT_EQ(folder.Count(), 200u);
    EXPECT_EQ(CTestFolder::TextOf(folder / "s-t199.png"), "199");
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
}

TEST(CFilesBesideTest, NamesThatAreAllTakenDoNotEndIt) {
    const CTestFolder folder;
    for (int i = 0; i < 40; ++i) (void)folder.Add("s-t" + std::to_string(1000 * i) + ".png", "taken");
    EXPECT_TRUE(Export(folder, "picture").starts_with("s-t"));
    EXPECT_EQ(folder.Count(), 42u);
}

}  // namespace
