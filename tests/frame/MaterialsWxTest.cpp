// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <wx/menu.h>
#include <wx/slider.h>

#include "frame/CFrameWindow.h"
#include "frame/command_table.h"
#include "model/prepare/CPreparedScene.h"
#include "script/CSceneScript.h"
#include "widgets/file_dialog_steps.h"
#include "widgets/windows_below.h"

namespace {

/** The knot, one part that fills the middle of the view. */
class MaterialsWxTest : public CFrameTest {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(CFrameTest::SetUp());
        ASSERT_TRUE(window.Open(path = Sample("knot.3ds", "k.3ds")));
        canvas = Frame().View().GetCanvas()->GetWindow();
        canvas->SetFocus();
    }
    void TearDown() override { window.prompt.saveAnswer = ESaveAnswer::Discard; }
    [[nodiscard]] std::size_t Steps() { return Frame().Session().Edits().Done().size(); }
    [[nodiscard]] wxString ItemText(int id) {
        return Frame().GetMenuBar()->FindItem(WidgetIdOf(id))->GetItemLabelText();
    }
    /** Uses the tool on what is in the middle of the view, as a press of the mouse does. */
    void PressInTheMiddle() {
        const wxSize size = canvas->GetClientSize() * canvas->GetContentScaleFactor();
        Frame().View().OnLeftDown(size.x / 2, size.y / 2);
        Frame().View().OnLeftUp(size.x / 2, size.y / 2);
    }
    [[nodiscard]] float Transparency() {
        const CPreparedScene& scene = *window.Engine().Prepared();
        float most = 0;
        for (const CPreparedMesh& mesh : scene.meshes)
            for (const CPreparedBatch& batch : mesh.batches)
                most = std::max(most, scene.materials[batch.material].transparency);
        return most;
    }

    std::wstring path;
    wxWindow* canvas = nullptr;
};

TEST_F(MaterialsWxTest, AToolIsTakenUpAndPutDown) {
    Frame().RunCommand(kCmdToolColor);
    EXPECT_TRUE(IsChecked(kCmdToolColor));
    Frame().RunCommand(kCmdToolShininess);
    EXPECT_TRUE(IsChecked(kCmdToolShininess) && !IsChecked(kCmdToolColor));
    Frame().RunCommand(kCmdToolShininess);
    EXPECT_FALSE(IsChecked(kCmdToolShininess)) << "its button again";
    Frame().RunCommand(kCmdToolColor);
    CSettings::Instance().closeOnEsc = true;
    window.Press(WXK_ESCAPE);
    EXPECT_FALSE(IsChecked(kCmdToolColor));
    ASSERT_TRUE(window.IsThere()) << "Esc puts the tool down before it closes anything";
    Frame().RunCommand(kCmdToolColor);
    Frame().View().OnRightDown(10, 10);
    EXPECT_FALSE(IsChecked(kCmdToolColor));
}

TEST_F(MaterialsWxTest, APressAndASliderMakeAStepEach) {
    Frame().RunCommand(kCmdToolTransparency);
    PressInTheMiddle();
    ASSERT_EQ(Steps(), 1u);
    EXPECT_FLOAT_EQ(Transparency(), 0.5f);
    EXPECT_EQ(Frame().GetTitle(), L"Orbivue - " + path + L" *");
    const wxString step = ItemText(kCmdUndo);
    EXPECT_TRUE(step.StartsWith("Undo: transparency of ")) << step;
    const std::vector<wxSlider*> sliders = WindowsBelow<wxSlider>(Frame());
    ASSERT_GE(sliders.size(), 2u);
    wxSlider* slider = sliders.back();
    slider->SetFocus();
    ASSERT_TRUE(WaitFor([&] { return slider->HasFocus(); }));
    for (int i = 0; i < 3; ++i) window.Press(WXK_RIGHT);
    EXPECT_TRUE(WaitFor([&] { return Transparency() > 0.75f; }));
    EXPECT_EQ(Steps(), 2u);
    Frame().RunCommand(kCmdUndo);
    Frame().RunCommand(kCmdUndo);
    EXPECT_FLOAT_EQ(Transparency(), 0.0f);
    EXPECT_EQ(Frame().GetTitle(), L"Orbivue - " + path);
    EXPECT_TRUE(ItemText(kCmdRedo).StartsWith("Redo: transparency of "));
    window.Press(WXK_ESCAPE);
    EXPECT_FALSE(IsChecked(kCmdToolTransparency)) << "also from the toolbar";
}

TEST_F(MaterialsWxTest, EnterUsesTheToolWithoutAMouse) {
    Frame().RunCommand(kCmdToolTransparency);
    window.Press(WXK_RETURN);
    EXPECT_EQ(Steps(), 1u);
    EXPECT_FLOAT_EQ(Transparency(), 0.5f);
    window.Press(WXK_RETURN);
    EXPECT_EQ(Steps(), 1u) << "nothing new";
}

TEST_F(MaterialsWxTest, SavesIntoAScriptAndOpensItAgain) {
    Frame().RunCommand(kCmdToolTransparency);
    PressInTheMiddle();
    RunWithDialog(kCmdSaveEdits, {file_dialog_steps::Proposes("k.orv"), CModalDriver::Press(WXK_RETURN)});
    EXPECT_FALSE(window.IsEnabled(kCmdSaveEdits));
    ASSERT_TRUE(ReadScript(window.folder / "k.orv"));
    ASSERT_TRUE(window.Open(At("k.orv")));
    EXPECT_FLOAT_EQ(Transparency(), 0.5f);
    EXPECT_EQ(Steps(), 0u);
}

TEST_F(MaterialsWxTest, ClosingAsksOnce) {
    Frame().RunCommand(kCmdToolTransparency);
    PressInTheMiddle();
    window.prompt.saveAnswer = ESaveAnswer::Cancel;
    Frame().Close();
    wxTheApp->ProcessIdle();
    ASSERT_TRUE(window.IsThere());
    EXPECT_EQ(window.prompt.messages,
              std::vector<std::wstring>{L"The edits of k.3ds are not saved. Save them to a script?"});
    window.prompt.saveAnswer = ESaveAnswer::Discard;
    Frame().Close();
    wxTheApp->ProcessIdle();
    EXPECT_FALSE(window.IsThere());
    EXPECT_EQ(window.prompt.messages.size(), 2u);
}

}  // namespace
