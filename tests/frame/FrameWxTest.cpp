// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <sys/resource.h>
#include <wx/app.h>
#include <wx/dnd.h>
#include <wx/menu.h>

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
    EXPECT_TRUE(CFrameWindow::WaitFor([&] { return Frame().View().GetPath() == chess; }));
    window.Press(WXK_BACK);
    EXPECT_TRUE(CFrameWindow::WaitFor([&] { return Frame().View().GetPath() == knot; }));

    Frame().RunCommand(kCmdDeleteFile);
    EXPECT_EQ(window.prompt->messages.back(), L"Are you sure do you want to delete a.3ds file?");
    EXPECT_TRUE(file_util_ex::DoesFileExist(knot));
    window.prompt->answer = true;
    Frame().RunCommand(kCmdDeleteFile);
    EXPECT_FALSE(file_util_ex::DoesFileExist(knot));
    EXPECT_EQ(window.Engine().Prepared(), nullptr);
    EXPECT_EQ(Title(), "Orbivue");
    EXPECT_EQ(Frame().Files().RecentFiles().Files(), std::vector<std::wstring>{chess});
    EXPECT_FALSE(window.IsEnabled(kCmdSaveAs) || window.IsEnabled(kCmdNextFile) ||
                 window.IsEnabled(kCmdDeleteFile));
}

TEST_F(FrameWxTest, TellsWhyAFileCannotBeDeleted) {
    const std::wstring knot = Sample("knot.3ds", "a.3ds");
    ASSERT_TRUE(window.Open(knot));
    window.prompt->answer = true;
    // Something that no unlink removes has come in its place.
    std::filesystem::remove(window.folder / "a.3ds");
    std::filesystem::create_directory(window.folder / "a.3ds");
    Frame().RunCommand(kCmdDeleteFile);
    EXPECT_EQ(window.prompt->messages.back(),
              L"The file a.3ds could not be deleted.\n" + knot + L": this is a folder");
}

TEST_F(FrameWxTest, TellsOfAFailedOpenInTheTitleAlone) {
    const std::wstring bad = file_util_ex::ConvertFromUTF8W(window.folder.Add("bad.3ds", "nothing"));
    EXPECT_FALSE(window.Open(bad));
    EXPECT_EQ(Title(), L"Orbivue - " + bad + L" - File open failed");
    const std::wstring object = file_util_ex::ConvertFromUTF8W(window.folder.Add("bad.obj", "nothing"));
    EXPECT_FALSE(window.Open(object));
    EXPECT_EQ(Title(), L"Orbivue - " + bad + L" - File open failed");
    constexpr char kTriangle[] = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
    EXPECT_FALSE(window.Open(file_util_ex::ConvertFromUTF8W(window.folder.Add("good.OBJ", kTriangle))));
    EXPECT_TRUE(Title().EndsWith("good.OBJ - File open failed"));
    EXPECT_FALSE(window.Open(bad));
    const std::wstring good = file_util_ex::ConvertFromUTF8W(window.folder.Add("good.obj", kTriangle));
    EXPECT_TRUE(window.Open(good));
    EXPECT_EQ(Title(), L"Orbivue - " + bad + L" - File open failed");
    EXPECT_TRUE(window.IsEnabled(kCmdSaveAs));
    EXPECT_EQ(Frame().Files().RecentFiles().Files(), std::vector<std::wstring>{good});
    EXPECT_TRUE(window.prompt->messages.empty());
    EXPECT_EQ(window.prompt->busy, 0);
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

TEST_F(FrameWxTest, AStaleRecentFileLeavesWhatIsShown) {
    const std::wstring knot = Sample("knot.3ds", "a.3ds"), chess = Sample("chess.3ds", "b.3ds");
    ASSERT_TRUE(window.Open(knot) && window.Open(chess));
    std::filesystem::remove(window.folder / "a.3ds");
    Frame().RunCommand(kCmdFirstRecentFile + 1);
    EXPECT_EQ(Frame().View().GetPath(), chess);
    EXPECT_EQ(Frame().Files().RecentFiles().Files(), std::vector<std::wstring>{chess});
}

/** What happens while a question is open waits for its answer. */
TEST_F(FrameWxTest, DropsAndClosingWaitForAnAnswer) {
    const std::wstring knot = Sample("knot.3ds", "a.3ds"), chess = Sample("chess.3ds", "b.3ds");
    ASSERT_TRUE(window.Open(knot));
    window.prompt->answer = true;
    window.prompt->whileAsking = [&] {
        Frame().Files().OpenDropped(chess);
        EXPECT_EQ(Frame().View().GetPath(), knot);
    };
    Frame().RunCommand(kCmdDeleteFile);
    EXPECT_FALSE(file_util_ex::DoesFileExist(knot));
    EXPECT_TRUE(file_util_ex::DoesFileExist(chess));
    EXPECT_EQ(Frame().View().GetPath(), chess);
}

}  // namespace
