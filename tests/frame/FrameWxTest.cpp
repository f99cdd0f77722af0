// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <sys/resource.h>
#include <wx/app.h>
#include <wx/dnd.h>
#include <wx/filedlg.h>
#include <wx/menu.h>
#include <wx/slider.h>
#include <wx/statusbr.h>

#include <csignal>
#include <filesystem>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "frame/CFrameWindow.h"
#include "frame/command_table.h"
#include "model/prepare/CPreparedScene.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/CModalDriver.h"
#include "widgets/ui/file_chooser.h"

namespace {

/** No file can grow beyond a few bytes as long as it lives, as on a disk that is full. */
class CFullDisk {
  public:
    CFullDisk() : m_signal(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit tight{1000, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &tight);
    }
    CFullDisk(const CFullDisk&) = delete;
    CFullDisk& operator=(const CFullDisk&) = delete;
    ~CFullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_signal);
    }

  private:
    rlimit m_before{};
    void (*m_signal)(int);
};

wxWindow* Slider(const wxWindow& parent) {
    for (wxWindow* child : parent.GetChildren()) {
        wxWindow* found = dynamic_cast<wxSlider*>(child) ? child : Slider(*child);
        if (found) return found;
    }
    return nullptr;
}

class FrameWxTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(window.IsReady()); }
    /** A sample of the program's, copied into the test's folder. */
    std::wstring Sample(const char* name, const char* as) {
        const std::string from = std_file_paths::GetDataPath(std::string("samples/") + name);
        std::filesystem::copy_file(from, window.folder / as);
        return file_util_ex::ConvertFromUTF8W(window.folder / as);
    }
    [[nodiscard]] CAViewerFrame& Frame() { return window.Frame(); }
    [[nodiscard]] wxString Title() { return Frame().GetTitle(); }
    [[nodiscard]] bool Shows(const std::wstring& path) {
        return CFrameWindow::WaitFor([&] { return Frame().View().GetPath() == path; });
    }
    /** Waits for a save dialog that proposes a name, and gives it another one, in the test's folder. */
    [[nodiscard]] CModalDriver::CStep Rename(std::string proposed, std::string name) {
        return [this, proposed = std::move(proposed), name = std::move(name)] {
            wxFileDialog* dialog = CModalDriver::FileDialog();
            if (!dialog || file_chooser::Name(*dialog) != proposed) return false;
            file_chooser::SetFolder(*dialog, window.folder.Path());
            file_chooser::SetName(*dialog, name);
            return true;
        };
    }
    /** What the status bar says when a menu has come and gone. */
    [[nodiscard]] wxString AfterHelp() {
        Frame().DoGiveHelp("help", true);
        Frame().DoGiveHelp("", false);
        return Frame().GetStatusBar()->GetStatusText(0);
    }
    void RunWithDialog(int command, std::deque<CModalDriver::CStep> steps) {
        CModalDriver driver(std::move(steps));
        Frame().RunCommand(command);
        EXPECT_TRUE(driver.IsDone());
    }

    CFrameWindow window;
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
    EXPECT_EQ(Title(), L"Orbivue - " + knot);
    EXPECT_TRUE(window.IsEnabled(kCmdSaveAs) && window.IsEnabled(kCmdNextFile) &&
                window.IsEnabled(kCmdDeleteFile));
    window.Press(WXK_SPACE);
    EXPECT_TRUE(Shows(chess));
    // The chess game plays: its bar may have the focus, and goes away with it.
    wxWindow* slider = Slider(Frame());
    ASSERT_NE(slider, nullptr);
    slider->SetFocus();
    window.Press(WXK_SPACE);
    EXPECT_TRUE(Shows(knot));
    EXPECT_TRUE(CFrameWindow::WaitFor([&] { return Frame().View().GetCanvas()->GetWindow()->HasFocus(); }));

    Frame().RunCommand(kCmdDeleteFile);
    EXPECT_EQ(window.prompt->messages.back(), L"Are you sure do you want to delete a.3ds file?");
    EXPECT_TRUE(file_util_ex::DoesFileExist(knot));
    window.prompt->answer = true;
    Frame().RunCommand(kCmdDeleteFile);
    EXPECT_EQ(Frame().View().GetPath(), chess);
    Frame().RunCommand(kCmdDeleteFile);
    EXPECT_EQ(window.Engine().Prepared(), nullptr);
    EXPECT_EQ(Title(), "Orbivue");
    EXPECT_FALSE(window.IsEnabled(kCmdSaveAs) || window.IsEnabled(kCmdNextFile) ||
                 window.IsEnabled(kCmdDeleteFile) || window.IsEnabled(kCmdReload));
}

TEST_F(FrameWxTest, TriesAgainWhatCouldNotBeOpened) {
    const std::wstring bad = file_util_ex::ConvertFromUTF8W(window.folder.Add("a.3ds", "nothing"));
    EXPECT_FALSE(window.Open(bad));
    EXPECT_EQ(Title(), L"Orbivue - " + bad + L" - File open failed");
    EXPECT_FALSE(window.IsEnabled(kCmdSaveAs));
    std::filesystem::remove(window.folder / "a.3ds");
    (void)Sample("knot.3ds", "a.3ds");
    window.Press(WXK_F5);
    EXPECT_TRUE(Shows(bad));
    EXPECT_EQ(Title(), L"Orbivue - " + bad);
    EXPECT_TRUE(window.IsEnabled(kCmdSaveAs));
    EXPECT_TRUE(window.prompt->messages.empty());
    EXPECT_EQ(window.prompt->busy, 0);
}

TEST_F(FrameWxTest, OpensAnObjUnderTheOldTitle) {
    constexpr char kTriangle[] = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\nf 9 9 9\n";
    const std::wstring good = file_util_ex::ConvertFromUTF8W(window.folder.Add("good.obj", kTriangle));
    EXPECT_TRUE(window.Open(good));
    EXPECT_EQ(Title(), "Orbivue");
    EXPECT_EQ(window.Engine().Prepared()->triangleCount, 1u);
    EXPECT_TRUE(window.IsEnabled(kCmdSceneNotes)) << "what was left out is told";
}

TEST_F(FrameWxTest, RemembersWhatWasChosen) {
    const std::wstring knot = Sample("knot.3ds", "k.3ds");
    ASSERT_TRUE(window.Open(knot));
    for (const int id : {kCmdShowBounds, kCmdShowAxis, kCmdRenderMode, kCmdLeftCamera})
        Frame().RunCommand(id);
    window.StartAgain();
    EXPECT_TRUE(Frame().StateOfCommand(kCmdShowBounds).checked);
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
    EXPECT_TRUE(Frame().StateOfCommand(kCmdRenderMode).checked);
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

TEST_F(FrameWxTest, ReadsAFileAgainAndKeepsTheCamera) {
    const std::wstring path = Sample("knot.3ds", "k.3ds");
    ASSERT_TRUE(window.Open(path));
    Frame().RunCommand(kCmdTopCamera);
    window.Engine().ZoomModel(60);
    const float eye = window.Engine().GetEyeZ();
    const std::size_t before = window.Engine().Prepared()->triangleCount;
    std::filesystem::copy_file(std_file_paths::GetDataPath("samples/chess.3ds"), window.folder / "k.3ds",
                               std::filesystem::copy_options::overwrite_existing);
    window.Press(WXK_F5);
    EXPECT_TRUE(CFrameWindow::WaitFor([&] { return window.Engine().Prepared()->triangleCount != before; }));
    EXPECT_EQ(window.Engine().GetCameraName(), "top_cam");
    EXPECT_FLOAT_EQ(window.Engine().GetEyeZ(), eye);
    // A file that is being written, or gone, leaves what is shown.
    window.folder.Add("k.3ds", "half");
    Frame().RunCommand(kCmdReload);
    EXPECT_NE(window.Engine().Prepared(), nullptr);
    std::filesystem::remove(window.folder / "k.3ds");
    Frame().RunCommand(kCmdReload);
    EXPECT_NE(window.Engine().Prepared(), nullptr);
    EXPECT_EQ(window.prompt->messages, (std::vector{L"The file k.3ds cannot be read again.\n" + path +
                                                        L": The file is too short to be a 3D Studio file",
                                                    L"The file k.3ds cannot be read again.\n" + path +
                                                        L": there is no such file or folder"}));
}

TEST_F(FrameWxTest, SavesScenesAndArchivesThatOpenAgain) {
    // Where it is, beside its textures.
    ASSERT_TRUE(window.Open(std_file_paths::GetDataPath(L"samples/orrery.3ds")));
    const std::size_t triangles = window.Engine().Prepared()->triangleCount;
    const auto file = [&](const char* name) { return file_util_ex::ConvertFromUTF8W(window.folder / name); };
    ASSERT_TRUE(Frame().View().SaveToPath(file("saved.3ds")));
    ASSERT_TRUE(Frame().View().SaveToPath(file("saved.zip")));
    EXPECT_FALSE(Frame().View().SaveToPath(file("no/such/folder.3ds")));
    for (const char* name : {"saved.3ds", "saved.zip"}) {
        const std::string before = CTestFolder::TextOf(window.folder / name);
        const CFullDisk full;
        EXPECT_FALSE(Frame().View().SaveToPath(file(name)));
        EXPECT_EQ(CTestFolder::TextOf(window.folder / name), before) << name;
    }
    ASSERT_TRUE(window.Open(file("saved.zip")));
    EXPECT_EQ(window.Engine().Prepared()->triangleCount, triangles);
    for (const CPreparedTexture& texture : window.Engine().Prepared()->textures)
        EXPECT_FALSE(texture.foundAt.empty()) << texture.reference;
    ASSERT_TRUE(window.Open(file("saved.3ds")));
    EXPECT_EQ(window.Engine().Prepared()->triangleCount, triangles);
}

/** A name in which neither kind of file can be is refused, and pictures that the new place lacks are copied. */
TEST_F(FrameWxTest, AsksForTheFileToSaveTo) {
    ASSERT_TRUE(window.Open(std_file_paths::GetDataPath(L"samples/orrery.3ds")));
    window.prompt->answer = true;
    const auto enter = CModalDriver::Press(WXK_RETURN);
    RunWithDialog(kCmdSaveAs, {Rename("orrery.3ds", "x.obj"), enter, Rename("x.3ds", "planets.3ds"), enter});
    EXPECT_FALSE(std::filesystem::exists(window.folder / "x.obj"));
    ASSERT_EQ(window.prompt->messages.size(), 2u);
    EXPECT_EQ(window.prompt->messages[0],
              L"A scene is saved as a .3ds or a .zip file, and x.obj would be neither.");
    RunWithDialog(kCmdCompressToZip, {Rename("orrery.zip", "planets"), enter});
    EXPECT_EQ(window.prompt->messages.size(), 2u);
    for (const char* name : {"planets.3ds", "planets.zip"}) {
        ASSERT_TRUE(window.Open(file_util_ex::ConvertFromUTF8W(window.folder / name)));
        for (const CPreparedTexture& texture : window.Engine().Prepared()->textures)
            EXPECT_FALSE(texture.foundAt.empty()) << name << ": " << texture.reference;
    }
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

TEST_F(FrameWxTest, SaysHowToBringAnObjectBack) {
    ASSERT_TRUE(window.Open(Sample("chess.3ds", "c.3ds")));
    const wxString before = Frame().GetStatusBar()->GetStatusText(3);
    EXPECT_EQ(AfterHelp(), "");
    const CPreparedScene& scene = *window.Engine().Prepared();
    std::string name;
    for (const CPreparedNode& node : scene.nodes)
        if (node.mesh >= 0) name = node.name;
    Frame().Session().DeleteNode(name);
    const wxString message =
        L"The object " + file_util_ex::ConvertFromUTF8W(name) + L" was removed. Ctrl+Z brings it back.";
    EXPECT_EQ(Frame().GetStatusBar()->GetStatusText(0), message);
    EXPECT_NE(Frame().GetStatusBar()->GetStatusText(3), before);
    EXPECT_EQ(AfterHelp(), message);
    EXPECT_TRUE(window.IsEnabled(kCmdUndo));
    EXPECT_FALSE(window.IsEnabled(kCmdRedo));
}

TEST_F(FrameWxTest, FillsTheScreenAndComesBack) {
    ASSERT_TRUE(window.Open(Sample("knot.3ds", "k.3ds")));
    window.Press(WXK_F11);
    EXPECT_TRUE(CFrameWindow::WaitFor([&] { return Frame().IsFullScreen(); }));
    EXPECT_TRUE(Frame().StateOfCommand(kCmdFullScreen).checked);
    window.Press('B');  // a key that means nothing
    window.Press(WXK_F11);
    const auto isBack = [&] { return !Frame().IsFullScreen() && Frame().GetMenuBar()->IsShown(); };
    EXPECT_TRUE(CFrameWindow::WaitFor(isBack));
    // The desktop has a key for it, too.
    GtkWindow* shown = GTK_WINDOW(Frame().GetHandle());
    gtk_window_fullscreen(shown);
    EXPECT_TRUE(CFrameWindow::WaitFor([&] { return Frame().StateOfCommand(kCmdFullScreen).checked; }));
    gtk_window_unfullscreen(shown);
    EXPECT_TRUE(CFrameWindow::WaitFor(isBack));
    EXPECT_FALSE(Frame().StateOfCommand(kCmdFullScreen).checked);
}

TEST_F(FrameWxTest, OpensWhatIsDropped) {
    const std::wstring knot = Sample("knot.3ds", "k.3ds");
    auto* target = dynamic_cast<wxFileDropTarget*>(Frame().View().GetCanvas()->GetWindow()->GetDropTarget());
    ASSERT_NE(target, nullptr);
    wxArrayString paths;
    paths.Add(file_util_ex::ConvertFromUTF8W(window.folder.Path()));
    EXPECT_TRUE(target->OnDropFiles(0, 0, paths));
    EXPECT_TRUE(CFrameWindow::WaitFor([&] { return Frame().View().GetPath() == knot; }));
}

TEST_F(FrameWxTest, PlaysAndHoldsAnimations) {
    ASSERT_TRUE(window.Open(Sample("orrery.3ds", "o.3ds")));
    ASSERT_TRUE(window.IsEnabled(kCmdPlayAnimation));
    EXPECT_TRUE(CFrameWindow::WaitFor([&] { return window.Engine().GetFrame() > 2; }));
    Frame().RunCommand(kCmdPlayAnimation);
    EXPECT_FALSE(Frame().StateOfCommand(kCmdPlayAnimation).checked);
    const float held = window.Engine().GetFrame();
    Frame().View().OnAnimationTick();
    // Opening what is shown, and reading it again, leave it held.
    EXPECT_TRUE(window.Open(Frame().View().GetPath()));
    Frame().RunCommand(kCmdReload);
    EXPECT_FALSE(Frame().StateOfCommand(kCmdPlayAnimation).checked);
    Frame().View().OnAnimationTick();
    EXPECT_EQ(window.Engine().GetFrame(), held);
    Frame().RunCommand(kCmdPlayAnimation);
    EXPECT_TRUE(CFrameWindow::WaitFor([&] { return window.Engine().GetFrame() != held; }));
}

TEST_F(FrameWxTest, EscClosesOnlyWhereItIsSetTo) {
    window.Press(WXK_ESCAPE);
    wxTheApp->ProcessIdle();
    ASSERT_TRUE(window.IsThere());
    CSettings::Instance().closeOnEsc = true;
    window.Press(WXK_ESCAPE);
    EXPECT_TRUE(CFrameWindow::WaitFor([&] {
        wxTheApp->ProcessIdle();
        return !window.IsThere();
    }));
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

/** What happens while a question is open waits for its answer. */
TEST_F(FrameWxTest, DropsAndClosingWaitForAnAnswer) {
    const std::wstring knot = Sample("knot.3ds", "a.3ds"), chess = Sample("chess.3ds", "b.3ds");
    ASSERT_TRUE(window.Open(knot));
    window.prompt->whileAsking = [&] {
        Frame().Session().OpenFileOrFolder(chess);
        EXPECT_EQ(Frame().View().GetPath(), knot);
    };
    Frame().RunCommand(kCmdDeleteFile);
    EXPECT_TRUE(Shows(chess));
    window.prompt->whileAsking = [&] {
        Frame().Session().OpenFileOrFolder(knot);
        EXPECT_FALSE(Frame().Close());
    };
    Frame().RunCommand(kCmdDeleteFile);
    EXPECT_TRUE(window.IsThere());
    EXPECT_EQ(Frame().View().GetPath(), chess);
    EXPECT_TRUE(CFrameWindow::WaitFor([&] {
        wxTheApp->ProcessIdle();
        return !window.IsThere();
    }));
}

}  // namespace
