// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <wx/uiaction.h>

#include "frame/CFrameWindow.h"
#include "frame/command_ids.h"
#include "frame/model_list/ui/CModelListControl.h"
#include "frame/model_list/ui/CModelPictures.h"
#include "frame/model_list/ui/CModelsLstToolBar.h"

namespace {

class ModelListWxTest : public CFrameTest {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(CFrameTest::SetUp());
        for (const char* name : {"a.3ds", "b.3ds", "c.3ds", "d.3ds"}) (void)Sample("knot.3ds", name);
    }
    [[nodiscard]] CModelListControl& Control() { return Frame().ModelList(); }
    [[nodiscard]] const CModelList& List() { return Control().Manager().List(); }
    void ShowList() {
        ASSERT_TRUE(window.Open(At("b.3ds")));
        Frame().RunCommand(kCmdShowModelList);
        ASSERT_TRUE(WaitFor([&] { return Control().HasFocus(); }));
    }
};

TEST_F(ModelListWxTest, IsEmptyWhileItIsHidden) {
    ASSERT_TRUE(window.Open(At("b.3ds")));
    EXPECT_EQ(List().Size(), 0u);
    Frame().RunCommand(kCmdShowModelList);
    EXPECT_TRUE(IsChecked(kCmdShowModelList));
    EXPECT_EQ(List().Size(), 4u);
    EXPECT_EQ(List().Current(), 1u);
    EXPECT_TRUE(Control().Bar().IsShown());
    Frame().RunCommand(kCmdShowModelList);
    EXPECT_EQ(List().Size(), 0u);
    EXPECT_TRUE(WaitFor([&] { return Frame().View().GetCanvas()->GetWindow()->HasFocus(); }));
}

TEST_F(ModelListWxTest, GoesThroughTheFolderByKeys) {
    ShowList();
    window.Press(WXK_END);
    EXPECT_EQ(List().Cursor(), 3u);
    EXPECT_EQ(List().Current(), 1u) << "keys choose, Return opens";
    window.Press(WXK_LEFT);
    window.Press(WXK_RETURN);
    EXPECT_TRUE(Shows(At("c.3ds")));
    window.Press('A');
    EXPECT_EQ(List().Cursor(), 0u);
    window.Press(WXK_TAB);
    EXPECT_FALSE(Control().HasFocus());
    window.Press(WXK_SPACE);
    EXPECT_TRUE(Shows(At("d.3ds")));
    window.Press(WXK_SPACE);
    EXPECT_TRUE(Shows(At("a.3ds")));
    EXPECT_EQ(List().Current(), 0u);
}

TEST_F(ModelListWxTest, OpensWhatIsClicked) {
    ShowList();
    CModelStrip& strip = Control().Bar().Strip();
    wxUIActionSimulator hand;
    hand.MouseMove(strip.ClientToScreen(wxPoint(strip.Cells().Left(3) + 20, 40)));
    hand.MouseClick();
    EXPECT_TRUE(Shows(At("d.3ds")));
    EXPECT_TRUE(Control().Manager().HoldsStep());
}

TEST_F(ModelListWxTest, FollowsTheFolderAndMakesPictures) {
    ShowList();
    EXPECT_TRUE(WaitFor([&] { return Control().HasPictures(); }));
    std::filesystem::remove(window.folder / "a.3ds");
    (void)Sample("knot.3ds", "e.3ds");
    EXPECT_TRUE(WaitFor([&] { return List().Size() == 4 && List().Path(3) == At("e.3ds"); }));
    EXPECT_EQ(List().Current(), 0u);
    EXPECT_TRUE(WaitFor([&] { return Control().HasPictures(); }));
}

}  // namespace
