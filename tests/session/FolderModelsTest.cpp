// SPDX-License-Identifier: MIT
#include "session/folder_models.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"

namespace {

using namespace folder_models;
using CNames = std::vector<std::string>;

CNames NamesOf(const std::vector<std::wstring>& paths) {
    CNames names;
    for (const std::wstring& path : paths)
        names.push_back(file_util_ex::GetFileName(file_util_ex::ConvertToUTF8(path)));
    return names;
}

TEST(FolderModelsTest, ListsAllEndingsInOneOrder) {
    const CTestFolder folder;
    const CNames expected{"A.3ds",  "a.3DS",   "a.orv", "a.zip",      "a 1.3ds",
                          "a2.Zip", "a10.3ds", "B.oRv", "Über 9.3ds", "über 10.3ds"};
    for (const std::string& name : expected) (void)folder.Add(name, "x");
    for (const char* name : {"d.obj", "e.jpg", "3ds", ".3ds", "b.3ds~", "b.3ds.bak"})
        (void)folder.Add(name, "x");
    EXPECT_EQ(NamesOf(ListBeside(file_util_ex::ConvertFromUTF8W(folder / "a.3DS"))), expected);
    EXPECT_EQ(NamesOf(ListInside(file_util_ex::ConvertFromUTF8W(folder.Path()))), expected);
}

TEST(FolderModelsTest, ListsRegularFilesAlone) {
    const CTestFolder folder;
    (void)folder.Add("real.3ds", "x");
    std::filesystem::create_directory(folder / "folder.3ds");
    ASSERT_EQ(::mkfifo((folder / "pipe.3ds").c_str(), 0600), 0);
    const auto link = [&](const char* to, const char* name) {
        std::filesystem::create_symlink(to, folder / name);
    };
    link("/dev/zero", "device.3ds");
    link("gone", "broken.3ds");
    link("loop.3ds", "loop.3ds");
    link("pipe.3ds", "to_pipe.3ds");
    link("real.3ds", "to_real.3ds");
    const std::wstring path = file_util_ex::ConvertFromUTF8W(folder / "real.3ds");
    EXPECT_EQ(NamesOf(ListBeside(path)), (CNames{"real.3ds", "to_real.3ds"}));
    EXPECT_TRUE(ListBeside(L"/nowhere/at/all.3ds").empty());
    EXPECT_TRUE(ListBeside(path + L"/b.3ds").empty()) << "no folder";
}

TEST(FolderModelsTest, KeepsNamesThatAreNoText) {
    const CTestFolder folder;
    for (const char* name : {"b\xff.3ds", "a.3ds"}) (void)folder.Add(name, "x");
    EXPECT_EQ(NamesOf(ListInside(file_util_ex::PathFromBytes(folder.Path()))),
              (CNames{"a.3ds", "b\xff.3ds"}));
}

TEST(FolderModelsTest, StepsRoundTheFolder) {
    const std::vector<std::wstring> models{L"/m/a.3ds", L"/m/b.zip", L"/m/c.orv"};
    const struct {
        const wchar_t* from;
        EStep step;
        const wchar_t* to;
        std::size_t place;
    } rows[] = {{L"/m/c.orv", EStep::Next, L"/m/a.3ds", 3},    {L"/m/a.3ds", EStep::Previous, L"/m/c.orv", 1},
                {L"/m/a.3ds", EStep::Next, L"/m/b.zip", 1},    {L"/m/c.orv", EStep::Previous, L"/m/b.zip", 3},
                {L"/m/B.ZIP", EStep::Next, L"/m/a.3ds", 0},    {L"/m/B.ZIP", EStep::Previous, L"/m/c.orv", 0},
                {L"/other/a.3ds", EStep::Next, L"/m/a.3ds", 0}};
    for (const auto& row : rows) {
        EXPECT_EQ(Neighbour(models, row.from, row.step), row.to);
        EXPECT_EQ(PlaceOf(models, row.from), row.place);
    }
    EXPECT_EQ(Neighbour({L"/m/a.3ds"}, L"/m/a.3ds", EStep::Next), L"");
    EXPECT_EQ(Neighbour({L"/m/a.3ds"}, L"/m/b.3ds", EStep::Next), L"") << "one file is not enough";
    EXPECT_EQ(Neighbour({}, L"/m/a.3ds", EStep::Previous), L"");
}

}  // namespace
