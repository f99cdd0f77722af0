// SPDX-License-Identifier: MIT
#include "session/CRecentFileList.h"

#include <gtest/gtest.h>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
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
    EXPECT_EQ(list.MenuText(0), L"&1 /a/" + std::wstring(44, L'x') + L"…/R&&B mix.3ds");
}

}  // namespace
