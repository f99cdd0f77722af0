// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <wx/aui/framemanager.h>
#include <wx/listbox.h>
#include <wx/menu.h>
#include <wx/statusbr.h>

#include <cstdlib>
#include <filesystem>

#include "files/std_file_paths.h"
#include "frame/CFrameWindow.h"
#include "frame/command_ids.h"
#include "frame/slideshow/ui/CSlideShow.h"
#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/ui/CModelsDlg.h"
#include "modeldb/ui/CModelsTree.h"
#include "modeldb/upload/ui/COutsidePicturesDlg.h"

namespace {

/** The program's frame with a library of its own. */
class ModelLibraryWxTest : public CFrameTest {
  protected:
    void SetUp() override {
        ASSERT_EQ(setenv("XDG_DATA_HOME", (window.folder / "data").c_str(), 1), 0);
        std::filesystem::create_directory(window.folder / "data");
        ASSERT_NO_FATAL_FAILURE(CFrameTest::SetUp());
    }
    void TearDown() override { C3DModelsLoadApi::Close(); }
    [[nodiscard]] bool IsTicked(int command) {
        return Frame().GetMenuBar()->FindItem(WidgetIdOf(command))->IsChecked();
    }
    [[nodiscard]] CModelsTree& Tree() { return Frame().Browser()->Tree(); }
    [[nodiscard]] bool WaitForRest() {
        return WaitFor([this] { return !Tree().IsBusy() && Tree().IsFilled(); });
    }
    [[nodiscard]] wxTreeItemId Group(const wxString& label) {
        wxTreeItemIdValue cookie;
        for (wxTreeItemId item = Tree().GetFirstChild(Tree().GetRootItem(), cookie); item.IsOk();
             item = Tree().GetNextChild(Tree().GetRootItem(), cookie))
            if (Tree().GetItemText(item) == label) return item;
        return {};
    }
    [[nodiscard]] wxString Said() { return Frame().GetStatusBar()->GetStatusText(0); }
};

TEST_F(ModelLibraryWxTest, BrowserComesAndGoes) {
    Frame().RunCommand(kCmdDownload);
    ASSERT_NE(Frame().Browser(), nullptr);
    ASSERT_TRUE(WaitForRest());
    EXPECT_TRUE(IsTicked(kCmdDownload) && Frame().Browser()->IsShownOnScreen());
    Frame().RunCommand(kCmdFullScreen);
    Frame().RunCommand(kCmdFullScreen);
    EXPECT_TRUE(IsTicked(kCmdDownload) && Frame().Browser()->IsShownOnScreen());
    Frame().RunCommand(kCmdDownload);
    EXPECT_FALSE(IsTicked(kCmdDownload) || Frame().Browser()->IsShownOnScreen());
    wxAuiManager& manager = *wxAuiManager::GetManager(Frame().Browser());
    Frame().RunCommand(kCmdDownload);
    wxAuiPaneInfo& pane = manager.GetPane(Frame().Browser());
    EXPECT_TRUE(pane.IsLeftDockable() && !pane.IsRightDockable() && pane.HasMaximizeButton());
    manager.ClosePane(pane);  // as its button does
    manager.Update();
    EXPECT_FALSE(IsTicked(kCmdDownload));
    window.Press(WXK_SPACE);  // the keyboard is the view's again
}

TEST_F(ModelLibraryWxTest, DownloadedModelOpensAsAnyOther) {
    ASSERT_TRUE(window.Open(Sample("chess.3ds", "a.3ds")));
    (void)Sample("vase.3ds", "b.3ds");
    Frame().Session().Reload();
    Frame().SlideShow().Start();
    Frame().RunCommand(kCmdDownload);
    ASSERT_TRUE(WaitForRest());
    Tree().Expand(Group("Shapes(2)"));
    ASSERT_TRUE(WaitForRest());
    wxTreeItemIdValue cookie;
    const wxTreeItemId knot = Tree().GetFirstChild(Group("Shapes(2)"), cookie);
    {
        const CTurns::CHold hold(Frame().Session().Turns());  // something else is going on
        Tree().SelectItem(knot);
        ASSERT_TRUE(WaitForRest());
        EXPECT_NE(Frame().GetTitle(), "Orbivue - Knot.3ds");
    }
    ASSERT_TRUE(WaitFor([&] { return Frame().GetTitle() == "Orbivue - Knot.3ds"; }));
    // A model without a folder has no next one.
    EXPECT_TRUE(WaitFor([&] { return !Frame().SlideShow().IsRunning(); }));
    EXPECT_EQ(Said(), "The slideshow has stopped: there is no other model.");
    EXPECT_TRUE(window.IsEnabled(kCmdSaveAs) && window.IsEnabled(kCmdUpload));
    EXPECT_FALSE(window.IsEnabled(kCmdReload) || window.IsEnabled(kCmdNextFile));
    EXPECT_TRUE(Frame().Browser()->IsDescendant(wxWindow::FindFocus()));
}

TEST_F(ModelLibraryWxTest, UploadsOnce) {
    EXPECT_FALSE(window.IsEnabled(kCmdUpload));
    ASSERT_TRUE(window.Open(Sample("knot.3ds", "mine.3ds")));
    Frame().RunCommand(kCmdDownload);
    ASSERT_TRUE(WaitForRest());
    Frame().RunCommand(kCmdUpload);
    EXPECT_TRUE(window.prompt.messages.empty());
    EXPECT_EQ(Said(), "The model was uploaded into the group Upload.");
    EXPECT_TRUE(Group("Upload(1)").IsOk());
    Frame().RunCommand(kCmdUpload);
    EXPECT_EQ(window.prompt.messages, std::vector<std::wstring>{L"3ds file alreay exist in the server"});
    EXPECT_FALSE(IsTicked(kCmdUpload));
    EXPECT_EQ(window.prompt.busy, 0);
    Frame().RunCommand(kCmdClearCache);
    EXPECT_EQ(window.prompt.busy, 0);
}

TEST_F(ModelLibraryWxTest, AsksBeforeForeignPicturesTravel) {
    for (const char* folder : {"models", "textures"})
        std::filesystem::create_directory(window.folder / folder);
    const std::wstring model = Sample("knot.3ds", "models/m.3ds");
    const std::filesystem::path samples = std_file_paths::GetDataPath(std::string("samples"));
    for (const auto& entry : std::filesystem::recursive_directory_iterator(samples))
        if (const auto ending = entry.path().extension();
            ending == ".png" || ending == ".jpg" || ending == ".tga")
            std::filesystem::copy_file(entry.path(),
                                       window.folder / ("textures/" + entry.path().filename().string()),
                                       std::filesystem::copy_options::skip_existing);
    ASSERT_TRUE(window.Open(model));
    wxDialog* asked = nullptr;
    CModalDriver driver({[&] {
        for (wxWindow* top : wxTopLevelWindows)
            if (auto* dialog = dynamic_cast<COutsidePicturesDlg*>(top)) asked = dialog;
        if (!asked) return false;
        asked->EndModal(wxID_CANCEL);
        return true;
    }});
    Frame().RunCommand(kCmdUpload);
    EXPECT_TRUE(driver.IsDone());
    Frame().RunCommand(kCmdDownload);
    ASSERT_TRUE(WaitForRest());
    EXPECT_FALSE(Group("Upload(1)").IsOk());
}

TEST_F(ModelLibraryWxTest, TellsOfAServerThatCannotBeReached) {
    CSettings::Instance().modelServer = L"http://127.0.0.1:1";
    Frame().RunCommand(kCmdDownload);
    EXPECT_EQ(window.prompt.messages, std::vector<std::wstring>{L"Unable to connect to the server."});
    EXPECT_EQ(Frame().Browser(), nullptr);
    EXPECT_FALSE(IsTicked(kCmdDownload) || Said().empty());
}

}  // namespace
