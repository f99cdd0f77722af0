// SPDX-License-Identifier: MIT
#include "session/CRecentFileList.h"

#include <gtest/gtest.h>

#include <utility>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "row_name.h"
#include "settings/CLocalRegStore.h"
#include "settings/CSettings.h"
#include "settings/CSettingsGuard.h"

namespace {

class CRecentFileListTest : public testing::Test {
  protected:
    CRecentFileListTest() { CLocalRegStore::Load(file_util_ex::ConvertFromUTF8W(folder / "settings.ini")); }
    CTestFolder folder;
    CLocalRegStore::CDefaultFileGuard guard;
};

TEST_F(CRecentFileListTest, KeepsTheNewestInFront) {
    CRecentFileList list;
    for (int i = 0; i < 12; ++i) list.AddToRecentFileList(L"/m/" + std::to_wstring(i) + L".3ds");
    list.AddToRecentFileList(L"/m/5.3ds");
    ASSERT_EQ(list.Files().size(), CRecentFileList::kMaxFiles);
    EXPECT_EQ(list.GetNameByIndex(0), L"/m/5.3ds");
    EXPECT_EQ(list.GetNameByIndex(1), L"/m/11.3ds");
    list.RemoveIndex(0);
    EXPECT_EQ(list.GetNameByIndex(0), L"/m/11.3ds");
}

/** What is reached, by choice (c) or by a step (s), and the list then. */
struct CReachedFiles {
    const char* name;
    std::vector<std::pair<char, const wchar_t*>> reached;
    std::vector<std::wstring> files;
};

class CRecentFilesReachedTest : public CRecentFileListTest,
                                public testing::WithParamInterface<CReachedFiles> {};

TEST_P(CRecentFilesReachedTest, KeepsWhatWasChosen) {
    CRecentFileList list;
    for (const auto& [how, path] : GetParam().reached)
        list.AddToRecentFileList(path, how == 's' ? EReached::ByStep : EReached::ByChoice);
    EXPECT_EQ(list.Files(), GetParam().files);
    // The next start of the program knows it, too, and goes on from there.
    list.SaveStdProfileSettings();
    CRecentFileList next;
    next.LoadStdProfileSettings();
    EXPECT_EQ(next.Files(), GetParam().files);
    for (CRecentFileList* one : {&list, &next}) one->AddToRecentFileList(L"/next", EReached::ByStep);
    EXPECT_EQ(next.Files(), list.Files());
}

const CReachedFiles kReached[] = {
    {"StepsShareOneEntry", {{'c', L"a"}, {'s', L"b"}, {'s', L"c"}, {'s', L"d"}}, {L"d", L"a"}},
    {"AChoiceGoesOnTop", {{'s', L"a"}, {'c', L"b"}}, {L"b", L"a"}},
    {"TheEntryMovesToTheTop", {{'s', L"a"}, {'c', L"b"}, {'s', L"c"}}, {L"c", L"b"}},
    {"AChosenFileStaysChosen",
     {{'c', L"a"}, {'c', L"b"}, {'s', L"a"}, {'s', L"c"}, {'s', L"d"}},
     {L"d", L"a", L"b"}},
    {"ChoosingTheSteppedFileKeepsIt", {{'s', L"a"}, {'c', L"a"}, {'s', L"b"}}, {L"b", L"a"}},
    {"OneChosenFileDropsOut",
     {{'c', L"1"},
      {'c', L"2"},
      {'c', L"3"},
      {'c', L"4"},
      {'c', L"5"},
      {'c', L"6"},
      {'c', L"7"},
      {'c', L"8"},
      {'c', L"9"},
      {'s', L"x"},
      {'s', L"y"},
      {'s', L"z"}},
     {L"z", L"9", L"8", L"7", L"6", L"5", L"4", L"3", L"2"}},
};
INSTANTIATE_TEST_SUITE_P(All, CRecentFilesReachedTest, testing::ValuesIn(kReached), kRowName);

TEST_F(CRecentFileListTest, HasOneSharedEntryForAllCopies) {
    CRecentFileList mine, other;
    other.AddToRecentFileList(L"/chosen");
    other.AddToRecentFileList(L"/stepped by other", EReached::ByStep);
    other.SaveStdProfileSettings();
    mine.AddToRecentFileList(L"/chosen by me");
    mine.AddToRecentFileList(L"/stepped", EReached::ByStep);
    mine.SaveStdProfileSettings();
    EXPECT_EQ(mine.Files(), (std::vector<std::wstring>{L"/stepped", L"/chosen by me", L"/chosen"}));
    mine.Remove(L"/stepped");
    mine.AddToRecentFileList(L"/stepped");
    mine.SaveStdProfileSettings();
    mine.AddToRecentFileList(L"/next", EReached::ByStep);
    EXPECT_EQ(mine.Files(), (std::vector<std::wstring>{L"/next", L"/stepped", L"/chosen by me", L"/chosen"}));
}

/** Two copies of the program run, and the one that ends last must not undo what the other remembered. */
TEST_F(CRecentFileListTest, SharesTheListWithAnotherCopy) {
    const CSettingsGuard settings;
    ASSERT_TRUE(CSettings::Instance().WriteAll());
    CSettings::Instance().ReadAll();
    CRecentFileList mine;
    mine.LoadStdProfileSettings();
    mine.AddToRecentFileList(L"/mine.3ds");
    {
        CIniFile other;
        ASSERT_TRUE(other.Set("RecentFiles", "File1", "/other.3ds") && other.Set("Settings", "Rotate", "1"));
        ASSERT_TRUE(other.Save(folder / "settings.ini"));
    }
    mine.SaveStdProfileSettings();
    ASSERT_TRUE(CSettings::Instance().WriteAll());
    CRecentFileList next;
    CLocalRegStore::Load(file_util_ex::ConvertFromUTF8W(folder / "settings.ini"));
    next.LoadStdProfileSettings();
    EXPECT_EQ(next.Files(), (std::vector<std::wstring>{L"/mine.3ds", L"/other.3ds"}));
    EXPECT_EQ(CLocalRegStore::GetInt("Settings", "Rotate", 0), 1);
}

TEST_F(CRecentFileListTest, WritesMenuTextsThatMeanWhatTheySay) {
    CRecentFileList list;
    list.AddToRecentFileList(L"/a/" + std::wstring(80, L'x') + L"/R&B\tmix.3ds");
    EXPECT_EQ(list.MenuText(0), L"&1 /a/" + std::wstring(44, L'x') + L"…/R&&B\xFFFDmix.3ds");
}

}  // namespace
