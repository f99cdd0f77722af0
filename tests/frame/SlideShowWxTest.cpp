// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <filesystem>

#include "frame/CFrameWindow.h"
#include "frame/command_ids.h"
#include "frame/slideshow/ui/CSlideShow.h"

namespace {

class SlideShowWxTest : public CFrameTest {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(CFrameTest::SetUp());
        CSettings::Instance().slideShowTime = 500;
        first = Sample("knot.3ds", "a.3ds");
        window.folder.Add("b.3ds", "no model");
        last = Sample("vase.3ds", "c.3ds");
        ASSERT_TRUE(window.Open(first));
    }
    [[nodiscard]] bool Runs() { return Frame().SlideShow().IsRunning(); }
    [[nodiscard]] bool HidesPointer() {
        GtkWidget* canvas = Frame().View().GetCanvas()->GetWindow()->GetHandle();
        GdkCursor* cursor = gdk_window_get_cursor(gtk_widget_get_window(canvas));
        return cursor != nullptr && gdk_cursor_get_cursor_type(cursor) == GDK_BLANK_CURSOR;
    }

    std::wstring first, last;
};

TEST_F(SlideShowWxTest, FillsTheScreenAndPassesOverWhatIsBroken) {
    Frame().RunCommand(kCmdFullScreenSlideShow);
    EXPECT_TRUE(WaitFor([&] { return Frame().IsFullScreen(); }));
    EXPECT_TRUE(Shows(last));
    EXPECT_EQ(Frame().View().GetCaption(), L"c.3ds");
    EXPECT_TRUE(Shows(first));
    EXPECT_TRUE(WaitFor([&] { return HidesPointer(); }));
    EXPECT_FALSE(window.IsEnabled(kCmdStartSlideShow));
    window.Press(WXK_ESCAPE);
    EXPECT_TRUE(WaitFor([&] { return !Frame().IsFullScreen(); }));
    EXPECT_FALSE(Runs() || HidesPointer());
    EXPECT_TRUE(window.IsThere());
    EXPECT_TRUE(window.IsEnabled(kCmdStartSlideShow));
}

TEST_F(SlideShowWxTest, HandsStopIt) {
    Frame().RunCommand(kCmdStartSlideShow);
    EXPECT_TRUE(Runs());
    Frame().View().OnLeftDown(20, 20);
    Frame().View().OnLeftUp(20, 20);
    EXPECT_FALSE(Runs());
    Frame().RunCommand(kCmdToolColor);
    EXPECT_TRUE(IsChecked(kCmdToolColor));
    Frame().RunCommand(kCmdStartSlideShow);
    EXPECT_FALSE(IsChecked(kCmdToolColor));
    EXPECT_TRUE(Runs());
    Frame().RunCommand(kCmdToolColor);
    EXPECT_FALSE(Runs());
}

TEST_F(SlideShowWxTest, DropsNoEdits) {
    Frame().RunCommand(kCmdStartSlideShow);
    ASSERT_FALSE(Frame().Session().Apply({CDeleteEdit{window.Engine().GetNodeNameById(0)}}, L"x").empty());
    EXPECT_TRUE(WaitFor([&] { return !Runs(); }));
    EXPECT_EQ(Frame().View().GetPath(), first);
    EXPECT_TRUE(Frame().Session().HasUnsavedEdits());
    Frame().Session().Undo();
}

TEST_F(SlideShowWxTest, SaysWhenNothingOpens) {
    Frame().RunCommand(kCmdStartSlideShow);
    std::filesystem::remove(window.folder / "a.3ds");
    window.folder.Add("c.3ds", "no model");
    EXPECT_TRUE(WaitFor([&] { return !window.prompt.messages.empty(); }));
    EXPECT_FALSE(Runs());
}

}  // namespace
