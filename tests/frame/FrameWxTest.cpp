// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/dnd.h>
#include <wx/filedlg.h>
#include <wx/menu.h>
#include <wx/slider.h>
#include <wx/statusbr.h>

#include <filesystem>

#include "frame/CFrameWindow.h"
#include "frame/command_table.h"
#include "model/prepare/CPreparedScene.h"
#include "session/CSessionListener.h"
#include "widgets/file_dialog_steps.h"
#include "widgets/windows_below.h"

namespace {

class FrameWxTest : public CFrameTest {
  protected:
    [[nodiscard]] CModalDriver::CStep Rename(const std::string& proposed, const std::string& name) {
        return file_dialog_steps::Rename(proposed, window.folder.Path(), name);
    }
    /** What the status bar says when a menu has come and gone. */
    [[nodiscard]] wxString AfterHelp() {
        Frame().DoGiveHelp("help", true);
        Frame().DoGiveHelp("", false);
        return Frame().GetStatusBar()->GetStatusText(0);
    }
};

TEST_F(FrameWxTest, EveryEnabledCommandHasAHandlerAndAnItem) {
    for (const CCommand& command : Commands()) {
        if (command.id == kCmdFirstRecentFile) continue;
        EXPECT_EQ(CAViewerFrame::HasHandler(command.id), command.needs != ENeeds::Feature) << command.text;
        const wxMenuItem* item = Frame().GetMenuBar()->FindItem(WidgetIdOf(command.id));
        ASSERT_NE(item, nullptr) << command.text;
        EXPECT_EQ(item->IsEnabled(), window.IsEnabled(command.id)) << command.text;
    }
}

TEST_F(FrameWxTest, OpensStepsAndDeletes) {
    const std::wstring knot = Sample("knot.3ds", "a.3ds"), chess = Sample("chess.3ds", "b.3ds");
    ASSERT_TRUE(window.Open(knot));
    EXPECT_EQ(Frame().GetTitle(), L"Orbivue - " + knot);
    EXPECT_TRUE(window.IsEnabled(kCmdSaveAs) && window.IsEnabled(kCmdNextFile));
    window.Press(WXK_SPACE);
    EXPECT_TRUE(Shows(chess));
    // The chess game plays: its bar may have the focus, and goes away with it.
    const auto sliders = WindowsBelow<wxSlider>(Frame());
    ASSERT_FALSE(sliders.empty());
    sliders.front()->SetFocus();
    window.Press(WXK_SPACE);
    EXPECT_TRUE(Shows(knot));
    EXPECT_TRUE(WaitFor([&] { return Frame().View().GetCanvas()->GetWindow()->HasFocus(); }));

    Frame().RunCommand(kCmdDeleteFile);
    EXPECT_EQ(window.prompt.messages.back(), L"Are you sure do you want to delete a.3ds file?");
    EXPECT_TRUE(file_util_ex::DoesFileExist(knot));
    window.prompt.answer = true;
    Frame().RunCommand(kCmdDeleteFile);
    EXPECT_EQ(Frame().View().GetPath(), chess);
    EXPECT_FALSE(window.IsEnabled(kCmdNextFile));
}

/** Notes at each opening whether a command is marked, in the menu and as it is in the toolbar. */
class CMarkWatch final : public CSessionListener {
  public:
    CMarkWatch(CAViewerFrame& frame, int command) : m_frame(frame), m_command(command) {
        m_frame.Session().AddListener(*this);
    }
    CMarkWatch(const CMarkWatch&) = delete;
    CMarkWatch& operator=(const CMarkWatch&) = delete;
    ~CMarkWatch() override { m_frame.Session().RemoveListener(*this); }
    void OnOpened(const COpenReport&) override {
        ++openings;
        if (IsMarked()) ++marks;
    }
    [[nodiscard]] bool IsMarked() const {
        const bool inMenu = m_frame.GetMenuBar()->IsChecked(WidgetIdOf(m_command));
        EXPECT_EQ(inMenu, m_frame.StateOfCommand(m_command).checked);
        return inMenu;
    }
    int openings = 0, marks = 0;

  private:
    CAViewerFrame& m_frame;
    int m_command;
};

TEST_F(FrameWxTest, MarksAStepWhileItRuns) {
    const std::wstring first = Sample("knot.3ds", "a.3ds");
    ASSERT_TRUE(window.Open(first));
    CMarkWatch next(Frame(), kCmdNextFile), previous(Frame(), kCmdPreviousFile);
    Frame().StepModel(folder_models::EStep::Next);
    EXPECT_EQ(next.openings, 0) << "there is no other file";
    EXPECT_FALSE(next.IsMarked());
    (void)Sample("knot.3ds", "b.3ds");
    Frame().StepModel(folder_models::EStep::Next);
    Frame().StepModel(folder_models::EStep::Previous);
    EXPECT_TRUE(next.openings == 2 && next.marks == 1 && previous.marks == 1);
    EXPECT_FALSE(next.IsMarked() || previous.IsMarked());
    EXPECT_EQ(Frame().GetStatusBar()->GetStatusText(2), "1 of 2");
}

TEST_F(FrameWxTest, AKeyHeldDownQueuesNoSteps) {
    std::vector<std::wstring> paths;
    for (const char* name : {"a.3ds", "b.3ds", "c.3ds"}) paths.push_back(Sample("knot.3ds", name));
    ASSERT_TRUE(window.Open(paths[0]));
    const CMarkWatch steps(Frame(), kCmdNextFile);
    wxWindow* canvas = Frame().View().GetCanvas()->GetWindow();
    for (int i = 0; i < 50; ++i) {
        wxKeyEvent press(wxEVT_KEY_DOWN);
        press.m_keyCode = i < 49 ? WXK_SPACE : WXK_BACK;
        canvas->ProcessWindowEvent(press);
    }
    EXPECT_TRUE(Shows(paths[2])) << "the newest counts";
    window.Press(WXK_SPACE);
    EXPECT_TRUE(Shows(paths[0]));
    EXPECT_EQ(steps.openings, 2);
}

TEST_F(FrameWxTest, RemembersWhatWasChosen) {
    const std::wstring knot = Sample("knot.3ds", "k.3ds");
    ASSERT_TRUE(window.Open(knot));
    for (const int id : {kCmdShowBounds, kCmdShowAxis, kCmdRenderMode, kCmdLeftCamera})
        Frame().RunCommand(id);
    window.StartAgain();
    EXPECT_TRUE(IsChecked(kCmdShowBounds));
    EXPECT_TRUE(Frame().GetMenuBar()->IsChecked(WidgetIdOf(kCmdRenderMode)));
    EXPECT_TRUE(Frame().View().Shown().wire);
    ASSERT_NE(Frame().GetMenuBar()->FindItem(WidgetIdOf(kCmdFirstRecentFile)), nullptr);
    Frame().RunCommand(kCmdFirstRecentFile);
    EXPECT_EQ(Frame().View().GetPath(), knot);
    EXPECT_EQ(window.Engine().GetCameraName(), "lft_cam");
}

TEST_F(FrameWxTest, WhatAShowChangesIsSeenAndCheckedButNotSet) {
    ASSERT_TRUE(window.Open(Sample("knot.3ds", "k.3ds")));
    CShowState show = Frame().View().Shown();
    show.wire = show.rotate = true;
    show.background = {1, 0, 0};
    Frame().View().Show(show);
    EXPECT_TRUE(IsChecked(kCmdRenderMode));
    EXPECT_EQ(CSettings::Instance(), CSettings());
    // What the user switches turns over what is seen, and that stays.
    Frame().RunCommand(kCmdRenderMode);
    Frame().RunCommand(kCmdShowAxis);
    EXPECT_FALSE(Frame().View().Shown().wire);
    EXPECT_TRUE(Frame().View().Shown().rotate);
    CSettings expected;
    expected.showAxis = true;
    EXPECT_EQ(CSettings::Instance(), expected);
}

TEST_F(FrameWxTest, AsksForTheFileToOpen) {
    const std::wstring knot = Sample("knot.3ds", "k.3ds");
    CLocalRegStore::WriteString("3dsFileDialog", "Path",
                                std::wstring_view(file_util_ex::ConvertFromUTF8W(window.folder.Path())));
    const auto select = [&] {
        wxFileDialog* dialog = CModalDriver::FileDialog();
        if (!dialog) return false;
        const std::string path = window.folder / "k.3ds";
        gtk_file_chooser_select_filename(GTK_FILE_CHOOSER(dialog->GetHandle()), path.c_str());
        return file_chooser::ChosenPath(*dialog) == path;
    };
    RunWithDialog(kCmdOpen, {select, CModalDriver::Press(WXK_RETURN)});
    EXPECT_EQ(Frame().View().GetPath(), knot);
}

TEST_F(FrameWxTest, FillsTheScreenAndComesBack) {
    ASSERT_TRUE(window.Open(Sample("knot.3ds", "k.3ds")));
    window.Press(WXK_F11);
    EXPECT_TRUE(WaitFor([&] { return Frame().IsFullScreen(); }));
    EXPECT_TRUE(IsChecked(kCmdFullScreen));
    window.Press('B');  // a key that means nothing
    window.Press(WXK_F11);
    const auto isBack = [&] { return !Frame().IsFullScreen() && Frame().GetMenuBar()->IsShown(); };
    EXPECT_TRUE(WaitFor(isBack));
    // The desktop has a key for it, too.
    GtkWindow* shown = GTK_WINDOW(Frame().GetHandle());
    gtk_window_fullscreen(shown);
    EXPECT_TRUE(WaitFor([&] { return IsChecked(kCmdFullScreen); }));
    gtk_window_unfullscreen(shown);
    EXPECT_TRUE(WaitFor(isBack));
    EXPECT_FALSE(IsChecked(kCmdFullScreen));
}

TEST_F(FrameWxTest, TicksTheCameraOfTheScene) {
    ASSERT_TRUE(window.Open(Sample("orrery.3ds", "o.3ds")));
    const int first = WidgetIdOf(kCmdFirstSceneCamera);
    ASSERT_NE(Frame().GetMenuBar()->FindItem(first), nullptr);
    EXPECT_FALSE(Frame().GetMenuBar()->IsChecked(first));
    for (int times = 0; times < 2; ++times) {
        Frame().RunCommand(kCmdFirstSceneCamera);
        EXPECT_TRUE(Frame().GetMenuBar()->IsChecked(first));
    }
    Frame().RunCommand(kCmdTopCamera);
    EXPECT_FALSE(Frame().GetMenuBar()->IsChecked(first));
}

TEST_F(FrameWxTest, ReadsAFileAgainAndKeepsTheCamera) {
    ASSERT_TRUE(window.Open(Sample("knot.3ds", "k.3ds")));
    Frame().RunCommand(kCmdTopCamera);
    window.Engine().ZoomModel(60);
    const float eye = window.Engine().GetEyeZ();
    const std::size_t before = window.Engine().Prepared()->triangleCount;
    std::filesystem::remove(window.folder / "k.3ds");
    (void)Sample("chess.3ds", "k.3ds");
    window.Press(WXK_F5);
    EXPECT_TRUE(WaitFor([&] { return window.Engine().Prepared()->triangleCount != before; }));
    EXPECT_EQ(window.Engine().GetCameraName(), "top_cam");
    EXPECT_FLOAT_EQ(window.Engine().GetEyeZ(), eye);
    // A file that is being written leaves what is shown.
    window.folder.Add("k.3ds", "half");
    Frame().RunCommand(kCmdReload);
    EXPECT_NE(window.Engine().Prepared(), nullptr);
    EXPECT_EQ(window.prompt.messages.size(), 1u);
}

/** A name in which neither kind of file can be is refused, and pictures that the new place lacks are copied. */
TEST_F(FrameWxTest, AsksForTheFileToSaveTo) {
    ASSERT_TRUE(window.Open(std_file_paths::GetDataPath(L"samples/orrery.3ds")));
    const std::size_t triangles = window.Engine().Prepared()->triangleCount;
    window.prompt.answer = true;
    const auto enter = CModalDriver::Press(WXK_RETURN);
    RunWithDialog(kCmdSaveAs, {Rename("orrery.3ds", "x.obj"), enter, Rename("x.3ds", "planets.3ds"), enter});
    EXPECT_FALSE(std::filesystem::exists(window.folder / "x.obj"));
    ASSERT_EQ(window.prompt.messages.size(), 2u);
    EXPECT_EQ(window.prompt.messages[0],
              L"A scene is saved as a .3ds or a .zip file, and x.obj would be neither.");
    RunWithDialog(kCmdCompressToZip, {Rename("orrery.zip", "planets"), enter});
    EXPECT_EQ(window.prompt.messages.size(), 2u);
    for (const char* name : {"planets.3ds", "planets.zip"}) {
        ASSERT_TRUE(window.Open(At(name)));
        EXPECT_EQ(window.Engine().Prepared()->triangleCount, triangles);
        for (const CPreparedTexture& texture : window.Engine().Prepared()->textures)
            EXPECT_FALSE(texture.foundAt.empty()) << name << ": " << texture.reference;
    }
    EXPECT_FALSE(Frame().View().SaveToPath(L"/no/such/folder.3ds"));
}

/** A name of another kind is asked again; what cannot be written is told in a box. */
TEST_F(FrameWxTest, ExportsGltf) {
    ASSERT_TRUE(window.Open(Sample("knot.3ds", "k.3ds")));
    const std::string model = CTestFolder::TextOf(window.folder / "k.3ds");
    const auto enter = CModalDriver::Press(WXK_RETURN);
    RunWithDialog(kCmdExportGltf, {Rename("k.glb", "k.3ds"), enter, CModalDriver::Press(WXK_ESCAPE)});
    EXPECT_EQ(CTestFolder::TextOf(window.folder / "k.3ds"), model);
    window.prompt.messages.clear();
    RunWithDialog(kCmdExportGltf, {Rename("k.glb", "new.glb"), enter});
    EXPECT_TRUE(CTestFolder::TextOf(window.folder / "new.glb").starts_with("glTF"));
    EXPECT_TRUE(AfterHelp().EndsWith("new.glb."));
    EXPECT_EQ(window.prompt.busy, 0);
    std::filesystem::create_symlink("k.3ds", window.folder / "link.glb");
    window.prompt.answer = true;  // yes, replace it
    RunWithDialog(kCmdExportGltf, {Rename("k.glb", "link.glb"), enter});
    ASSERT_FALSE(window.prompt.messages.empty());
    EXPECT_TRUE(window.prompt.messages.back().starts_with(L"The scene could not be exported."));
    EXPECT_EQ(CTestFolder::TextOf(window.folder / "k.3ds"), model);
}

TEST_F(FrameWxTest, OpensWhatIsDroppedAndTellsWhatWasLeftOut) {
    auto* target = dynamic_cast<wxFileDropTarget*>(Frame().View().GetCanvas()->GetWindow()->GetDropTarget());
    ASSERT_NE(target, nullptr);
    wxArrayString paths;
    paths.Add(
        wxString::FromUTF8(window.folder.Add("good.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\nf 9 9 9\n")));
    EXPECT_TRUE(target->OnDropFiles(0, 0, paths));
    EXPECT_TRUE(WaitFor([&] { return window.IsEnabled(kCmdSceneNotes); }));
    EXPECT_EQ(window.Engine().Prepared()->triangleCount, 1u);
}

TEST_F(FrameWxTest, PlaysAndHoldsAnimations) {
    ASSERT_TRUE(window.Open(Sample("orrery.3ds", "o.3ds")));
    EXPECT_TRUE(WaitFor([&] { return window.Engine().GetFrame() > 2; }));
    Frame().RunCommand(kCmdPlayAnimation);
    const float held = window.Engine().GetFrame();
    Frame().RunCommand(kCmdReload);
    EXPECT_FALSE(IsChecked(kCmdPlayAnimation)) << "reading it again leaves it held";
    Frame().View().OnAnimationTick();
    EXPECT_EQ(window.Engine().GetFrame(), held);
    Frame().RunCommand(kCmdPlayAnimation);
    EXPECT_TRUE(WaitFor([&] { return window.Engine().GetFrame() != held; }));
}

/** What happens while a question is open waits for its answer. */
TEST_F(FrameWxTest, DropsAndClosingWaitForAnAnswer) {
    const std::wstring knot = Sample("knot.3ds", "a.3ds"), chess = Sample("chess.3ds", "b.3ds");
    ASSERT_TRUE(window.Open(knot));
    window.prompt.whileAsking = [&] { EXPECT_EQ(Frame().Session().OpenFileOrFolder(chess), EOpened::Waits); };
    Frame().RunCommand(kCmdDeleteFile);
    EXPECT_TRUE(Shows(chess));
    window.prompt.whileAsking = [&] { EXPECT_FALSE(Frame().Close()); };
    Frame().RunCommand(kCmdDeleteFile);
    EXPECT_TRUE(window.IsThere());
    EXPECT_TRUE(WaitFor([&] {
        wxTheApp->ProcessIdle();
        return !window.IsThere();
    }));
}

}  // namespace
