// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"

namespace fs = std::filesystem;
namespace fu = file_util_ex;

TEST(FileUtilTest, PathsFallIntoTheirParts) {
    const struct {
        std::string path, folder, name, ext, stem;
    } rows[] = {{"/m/a.b/Car.3DS", "/m/a.b", "Car.3DS", "3DS", "/m/a.b/Car"},
                {"/m/a.b/Car", "/m/a.b", "Car", "", "/m/a.b/Car"},
                {"a.tar.gz", "", "a.tar.gz", "gz", "a.tar"},
                {"/x/.profile", "/x", ".profile", "", "/x/.profile"},
                {"/x.3ds", "/", "x.3ds", "3ds", "/x"},
                {"x.", "", "x.", "", "x"},
                {"a//b.c", "a", "b.c", "c", "a//b"}};
    for (const auto& c : rows) {
        EXPECT_EQ(fu::GetFilePath(c.path), c.folder);
        EXPECT_EQ(fu::GetFileName(c.path), c.name);
        EXPECT_EQ(fu::GetFileExt(c.path), c.ext);
        EXPECT_EQ(fu::GetFileNameWithPath(c.path), c.stem);
        EXPECT_EQ(fu::SetFileExt(c.path, "3ds"), c.stem + ".3ds");
    }
}

TEST(FileUtilTest, PathsAreJoinedAndResolved) {
    EXPECT_EQ(fu::MakePath("/a/", "/b"), "/a/b");
    EXPECT_EQ(fu::MakePath("/", "b"), "/b");
    EXPECT_EQ(fu::MakePath("", "b"), "b");
    EXPECT_EQ(fu::SetFileExt("a.x", ".y"), "a.y");
    EXPECT_EQ(fu::MakeAbsolute(L"/a/b", L"/c"), L"/c");
    EXPECT_EQ(fu::MakeAbsolute("", "a/./b//c"), "a/b/c");
    EXPECT_EQ(fu::MakeAbsolute("/", "../.."), "/");
}

TEST(FileUtilTest, TwoDotsLeadWhereTheSystemGoes) {
    const CTestFolder folder;
    ASSERT_TRUE(fu::Mkdir(folder / "far/deep"));
    fs::create_directory_symlink("far/deep", folder / "link");
    fs::create_directory_symlink("link", folder / "link2");
    fs::create_symlink("nowhere", folder / "broken");
    folder.Add("x", "");
    for (const auto& [path, expected] : {std::pair{"./far/deep//../x", "far/x"},
                                         {"link/../x", "far/x"},
                                         {"link2/../x", "far/x"},
                                         {"link2/../../x", "x"},
                                         {"link/x", "link/x"},
                                         {"none/../x", "none/../x"},
                                         {"none/../../x", "none/../../x"},
                                         {"broken/../x", "broken/../x"},
                                         {"x/../far", "x/../far"}}) {
        EXPECT_EQ(fu::MakeAbsolute(folder.Path(), path), folder / expected) << path;
    }
}

TEST(FileUtilTest, ListsFilesByMaskInOrderAndFoldersApart) {
    const CTestFolder folder;
    for (const char* name : {"b.3DS", "a.3ds", "c.obj", ".3ds", "r\xE4.3ds"}) folder.Add(name, "");
    ASSERT_TRUE(fu::Mkdir(folder / "sub.3ds/deep"));
    std::vector<std::string> files = {"kept"};
    const std::vector<std::string> masks = {"*.3ds"};
    EXPECT_TRUE(fu::GetAllFiles(folder.Path(), files, masks));
    ASSERT_EQ(files.size(), 4u);
    EXPECT_TRUE(fu::DoesFileExist(files.back())) << "a name that is no text";
    files.pop_back();
    EXPECT_EQ(files, (std::vector<std::string>{"kept", folder / "a.3ds", folder / "b.3DS"}));
    std::vector<std::wstring> folders;
    EXPECT_TRUE(fu::GetSubDirs(fu::ConvertFromUTF8W(folder.Path()), folders));
    EXPECT_EQ(folders, std::vector<std::wstring>{fu::ConvertFromUTF8W(folder / "sub.3ds")});
    EXPECT_FALSE(fu::GetAllFiles(folder / "none", files));
}

TEST(FileUtilTest, RmdirDeletesATreeButFollowsNoLinkAndTakesNoFile) {
    const CTestFolder folder;
    ASSERT_TRUE(fu::Mkdir(folder / "tree/deep"));
    ASSERT_TRUE(fu::Mkdir(folder / "outside"));
    const std::string kept = folder.Add("outside/kept.txt", "x");
    fs::create_directory_symlink(folder / "outside", folder / "tree/deep/link");
    fs::create_directory_symlink(folder / "outside", folder / "link");
    EXPECT_FALSE(fu::Rmdir(folder / "link"));
    EXPECT_FALSE(fu::Rmdir(kept));
    EXPECT_FALSE(fu::Rmdir("/"));
    EXPECT_FALSE(fu::Rmdir(""));
    EXPECT_TRUE(fu::Rmdir(fu::ConvertFromUTF8W(folder / "tree")));
    EXPECT_FALSE(fs::exists(folder / "tree"));
    EXPECT_TRUE(fu::DoesFileExist(kept));
    EXPECT_FALSE(fu::DoesFileExist(folder.Path()));
    EXPECT_FALSE(fu::DeleteFileW(folder / "outside"));
    EXPECT_TRUE(fu::DeleteFileW(kept));
}
