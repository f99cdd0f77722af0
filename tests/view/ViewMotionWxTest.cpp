// SPDX-License-Identifier: MIT
// A scene that takes long to draw in a window: quick pictures while it moves, the full one at rest.
#include <gtest/gtest.h>

#include <ctime>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "files/CTestFolder.h"
#include "scene_builder/large_scene.h"
#include "view/CViewWindow.h"

namespace {

class ViewMotionWxTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(window.IsReady());
        window.Hand().MouseUp();  // another test may have left it down
        MakeLargeScene(1'000'000, folder / "large.3ds");
        const std::string path = folder / "large.3ds";
        ASSERT_TRUE(window.View().OpenModel(std::wstring(path.begin(), path.end()).c_str()));
        window.View().SetPlaying(false);
        ASSERT_TRUE(WaitForFullPicture());
    }
    [[nodiscard]] bool IsWhole() { return window.Engine().IsLastFrameWhole(); }
    [[nodiscard]] bool WaitForFullPicture() {
        const int paints = window.Paints();
        window.View().Redraw();
        return CViewWindow::WaitFor([&] { return window.Paints() > paints && IsWhole(); });
    }
    /** However busy the machine is. */
    [[nodiscard]] bool WaitForLevels() {
        bool made = false;
        for (int tries = 0; tries < 5 && !made; ++tries) {
            made = CViewWindow::WaitFor([this] {
                window.View().GetCanvas()->BeginGL();
                return !window.Engine().WorkOnLevels();
            });
        }
        window.Settle();  // the view hears of it
        return made;
    }
    void Press() {
        window.MoveTo(200, 150);
        window.Hand().MouseDown();
        ASSERT_TRUE(
            CViewWindow::WaitFor([this] { return window.View().GetDragState() == EDragState::Dragging; }));
    }

    CTestFolder folder;
    CViewWindow window{nullptr};
};

TEST_F(ViewMotionWxTest, QuickWhileDraggedAndFullAtRest) {
    ASSERT_TRUE(WaitForLevels());
    Press();
    int reduced = 0;
    for (int i = 0; i < 20; ++i) {
        const int paints = window.Paints();
        window.MoveTo(200 + 4 * i, 150 + i % 3);
        // On a busy machine the full picture may follow before anybody looks.
        ASSERT_TRUE(CViewWindow::WaitFor([&] {
            reduced += !IsWhole();
            return window.Paints() > paints;
        }));
        reduced += !IsWhole();
    }
    EXPECT_GT(reduced, 0);
    // Held still, and nobody asks: the full picture comes.
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return IsWhole(); }));
    window.MoveTo(240, 170);
    window.Hand().MouseUp();
    ASSERT_TRUE(CViewWindow::WaitFor(
        [this] { return window.View().GetDragState() == EDragState::Idle && IsWhole(); }));
    // Once the levels are made nothing runs.
    bool isAtRest = false;
    for (int i = 0; i < 40 && !isAtRest; ++i) {
        const int paints = window.Paints();
        const std::clock_t used = std::clock();
        CViewWindow::Rest(500);
        isAtRest = window.Paints() == paints && std::clock() - used < CLOCKS_PER_SEC / 50;
    }
    EXPECT_TRUE(isAtRest);
}

// Levels are made while it turns, too, or a scene that plays would never have any.
TEST_F(ViewMotionWxTest, QuickWhileItTurnsAndFullWhenItStops) {
    window.View().SetRotate(true);
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return !IsWhole(); }));
    window.View().SetRotate(false);
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return IsWhole(); }));
}

TEST_F(ViewMotionWxTest, APressEndsAFullPictureThatIsNotDone) {
    window.MoveTo(200, 150);
    window.Settle();
    window.View().GetCanvas()->BeginGL();
    window.View().OnPaint();
    ASSERT_TRUE(window.View().IsPictureComplete());
    window.Hand().MouseDown();  // nobody serves it yet
    window.View().OnPaint();
    EXPECT_FALSE(window.View().IsPictureComplete());
    EXPECT_FALSE(IsWhole());
    ASSERT_TRUE(
        CViewWindow::WaitFor([this] { return window.View().GetDragState() == EDragState::Dragging; }));
    window.Hand().MouseUp();
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return IsWhole() && window.View().IsPictureComplete(); }));
    // A mouse that only passes by ends nothing.
    window.Settle();
    window.View().GetCanvas()->BeginGL();
    const wxPoint at = window.View().GetCanvas()->GetWindow()->ClientToScreen(wxPoint(90, 90));
    window.Hand().MouseMove(at.x, at.y);
    window.View().OnPaint();
    EXPECT_TRUE(window.View().IsPictureComplete());
}

}  // namespace
