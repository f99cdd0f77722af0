// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <wx/uiaction.h>

#include <filesystem>

#include "files/std_file_paths.h"
#include "frame/CFrameWindow.h"
#include "frame/command_ids.h"
#include "frame/model_list/ui/CModelListControl.h"
#include "frame/model_list/ui/CModelPictures.h"
#include "frame/model_list/ui/CModelsLstToolBar.h"

namespace {

class ModelListWxTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(window.IsReady());
        for (const char* name : {"a.3ds", "b.3ds", "c.3ds", "d.3ds"}) Copy(name);
    }
    void Copy(const std::string& name) {
        std::filesystem::copy_file(std_file_paths::GetDataPath("samples/knot.3ds"), window.folder / name);
    }
    [[nodiscard]] std::wstring At(const std::string& name) const {
        return file_util_ex::ConvertFromUTF8W(window.folder / name);
    }
    [[nodiscard]] CModelListControl& Control() { return window.Frame().ModelList(); }
    [[nodiscard]] const CModelList& List() { return Control().Manager().List(); }
    [[nodiscard]] bool Shows(const std::string& name) {
        return CFrameWindow::WaitFor([&] { return window.Frame().View().GetPath() == At(name); });
    }
    void ShowList() {
        ASSERT_TRUE(window.Open(At("b.3ds")));
        window.Frame().RunCommand(kCmdShowModelList);
        ASSERT_TRUE(CFrameWindow::WaitFor([&] { return Control().HasFocus(); }));
    }

    CFrameWindow window;
};

TEST_F(ModelListWxTest, IsEmptyWhileItIsHidden) {
    ASSERT_TRUE(window.Open(At("b.3ds")));
    EXPECT_EQ(List().Size(), 0u);
    window.Frame().RunCommand(kCmdShowModelList);
    EXPECT_TRUE(window.Frame().StateOfCommand(kCmdShowModelList).checked);
    EXPECT_EQ(List().Size(), 4u);
    EXPECT_EQ(List().Current(), 1u);
    EXPECT_TRUE(Control().Bar().IsShown());
    window.Frame().RunCommand(kCmdShowModelList);
    EXPECT_EQ(List().Size(), 0u);
    EXPECT_TRUE(
        CFrameWindow::WaitFor([&] { return window.Frame().View().GetCanvas()->GetWindow()->HasFocus(); }));
}

TEST_F(ModelListWxTest, GoesThroughTheFolderByKeys) {
    ShowList();
    window.Press(WXK_END);
    EXPECT_EQ(List().Cursor(), 3u);
    EXPECT_EQ(List().Current(), 1u) << "keys choose, Return opens";
    window.Press(WXK_LEFT);
    window.Press(WXK_RETURN);
    EXPECT_TRUE(Shows("c.3ds"));
    window.Press('A');
    EXPECT_EQ(List().Cursor(), 0u);
    window.Press(WXK_TAB);
    EXPECT_FALSE(Control().HasFocus());
    window.Press(WXK_SPACE);
    EXPECT_TRUE(Shows("d.3ds"));
    window.Press(WXK_SPACE);
    EXPECT_TRUE(Shows("a.3ds"));
    EXPECT_EQ(List().Current(), 0u);
}

TEST_F(ModelListWxTest, OpensWhatIsClicked) {
    ShowList();
    CModelStrip& strip = Control().Bar().Strip();
    wxUIActionSimulator hand;
    hand.MouseMove(strip.ClientToScreen(wxPoint(strip.Cells().Left(3) + 20, 40)));
    hand.MouseClick();
    EXPECT_TRUE(Shows("d.3ds"));
    EXPECT_TRUE(Control().Manager().HoldsStep());
}

TEST_F(ModelListWxTest, FollowsTheFolderAndMakesPictures) {
    ShowList();
    EXPECT_TRUE(CFrameWindow::WaitFor([&] { return Control().HasPictures(); }));
    std::filesystem::remove(window.folder / "a.3ds");
    Copy("e.3ds");
    EXPECT_TRUE(CFrameWindow::WaitFor([&] { return List().Size() == 4 && List().Path(3) == At("e.3ds"); }));
    EXPECT_EQ(List().Current(), 0u);
    EXPECT_TRUE(CFrameWindow::WaitFor([&] { return Control().HasPictures(); }));
}

}  // namespace
