// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "session/CRecentFileList.h"
#include "session/folder_models.h"
#include "settings/CLocalRegStore.h"
#include "settings/CSettings.h"
#include "settings/CSettingsGuard.h"

namespace {

using folder_models::EStep;

std::wstring Wide(const std::string& text) {
    return file_util_ex::ConvertFromUTF8W(text);
}

TEST(FolderModelsTest, StepsRoundTheFolder) {
    const CTestFolder folder;
    for (const char* name : {"a.3ds", "b.ZIP", "c.3ds", "d.obj", "e.jpg"}) folder.Add(name, "x");
    const auto path = [&](const char* name) { return Wide(folder / name); };
    const std::vector<std::wstring> models = folder_models::ListBeside(path("a.3ds"));
    ASSERT_EQ(models.size(), 3u);
    EXPECT_EQ(folder_models::ListInside(Wide(folder.Path())), models);
    EXPECT_EQ(folder_models::Neighbour(models, path("c.3ds"), EStep::Next), path("a.3ds"));
    EXPECT_EQ(folder_models::Neighbour(models, path("a.3ds"), EStep::Previous), path("c.3ds"));
    EXPECT_EQ(folder_models::Neighbour(models, path("a.3ds"), EStep::Next), path("b.ZIP"));
    EXPECT_EQ(folder_models::Neighbour(models, path("A.3DS"), EStep::Next), path("a.3ds"));
    EXPECT_EQ(folder_models::Neighbour(models, path("A.3DS"), EStep::Previous), path("c.3ds"));
    EXPECT_EQ(folder_models::Neighbour({path("a.3ds")}, path("a.3ds"), EStep::Next), L"");
    EXPECT_TRUE(folder_models::ListBeside(L"/nowhere/at/all.3ds").empty());
}

class RecentFileListTest : public testing::Test {
  protected:
    RecentFileListTest() { CLocalRegStore::Load(Wide(folder / "settings.ini")); }
    CTestFolder folder;
    CLocalRegStore::CDefaultFileGuard guard;
};

TEST_F(RecentFileListTest, KeepsTheNewestInFront) {
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
TEST_F(RecentFileListTest, SharesTheListWithAnotherCopy) {
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
    CLocalRegStore::Load(Wide(folder / "settings.ini"));
    next.LoadStdProfileSettings();
    EXPECT_EQ(next.Files(), (std::vector<std::wstring>{L"/mine.3ds", L"/other.3ds"}));
    EXPECT_EQ(CLocalRegStore::GetInt("Settings", "Rotate", 0), 1);
}

TEST_F(RecentFileListTest, WritesMenuTextsThatMeanWhatTheySay) {
    CRecentFileList list;
    list.AddToRecentFileList(L"/a/" + std::wstring(80, L'x') + L"/R&B\tmix.3ds");
    EXPECT_EQ(list.MenuText(0), L"&1 /a/" + std::wstring(44, L'x') + L"…/R&&B mix.3ds");
}

}  // namespace
