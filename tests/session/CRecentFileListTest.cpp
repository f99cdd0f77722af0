// SPDX-License-Identifier: MIT
#include "session/CRecentFileList.h"

#include <gtest/gtest.h>

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

/** What is reached, by choice (c) or by a step (s), and the list then; a letter each. */
struct CReachedFiles {
    const char* name;
    const char* reached;
    const char* files;
};

class CRecentFilesReachedTest : public CRecentFileListTest,
                                public testing::WithParamInterface<CReachedFiles> {};

TEST_P(CRecentFilesReachedTest, KeepsWhatWasChosen) {
    CRecentFileList list;
    for (const char* at = GetParam().reached; *at; at += 2)
        list.AddToRecentFileList({static_cast<wchar_t>(at[1])},
                                 *at == 's' ? EReached::ByStep : EReached::ByChoice);
    const auto joined = [](const CRecentFileList& of) {
        std::string text;
        for (const std::wstring& file : of.Files()) text += file_util_ex::ConvertToUTF8(file);
        return text;
    };
    EXPECT_EQ(joined(list), GetParam().files);
    // The next start of the program knows it, too, and goes on from there.
    list.SaveStdProfileSettings();
    CRecentFileList next;
    next.LoadStdProfileSettings();
    EXPECT_EQ(joined(next), GetParam().files);
    for (CRecentFileList* one : {&list, &next}) one->AddToRecentFileList(L"/next", EReached::ByStep);
    EXPECT_EQ(next.Files(), list.Files());
}

const CReachedFiles kReached[] = {
    {"StepsShareOneEntry", "casbscsd", "da"},
    {"AChoiceGoesOnTop", "sacb", "ba"},
    {"TheEntryMovesToTheTop", "sacbsc", "cb"},
    {"AChosenFileStaysChosen", "cacbsascsd", "dab"},
    {"ChoosingTheSteppedFileKeepsIt", "sacasb", "ba"},
    {"OneChosenFileDropsOut", "c1c2c3c4c5c6c7c8c9sxsysz", "z98765432"},
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
