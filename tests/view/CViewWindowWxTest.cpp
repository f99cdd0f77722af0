// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ctime>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "files/CTestFolder.h"
#include "model/prepare/CPreparedScene.h"
#include "view/CViewWindow.h"

namespace {

/** A view that shows two boxes from the front: Left is seen at (90, 190), Right at (400,
 * 190) or thereabouts. */
class CViewWindowWxTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(window.IsReady());
        Show(0);
    }
    void Show(int frames) {
        const std::string path = folder / ("boxes" + std::to_string(frames) + ".3ds");
        SaveTwoBoxes(path, frames);
        m_path.assign(path.begin(), path.end());
        ASSERT_TRUE(window.View().OpenModel(m_path.c_str())) << window.Engine().LastError().Text();
        window.View().SetFrontCamera();
        const C2DRect& size = window.Engine().GetPreviewSize();
        middleX = static_cast<int>(size.right) / 2;
        middleY = static_cast<int>(size.bottom) / 2;
        aside = static_cast<int>(size.bottom) * 3 / 11;
    }
    [[nodiscard]] std::string NodeAt(int x, int y) {
        const char* name = window.View().PickNode(x, y);
        return name ? name : "";
    }
    [[nodiscard]] CVec3 Eye() {
        const CViewCamera& camera = window.Engine().SeenView().camera;
        return camera.Eye() - camera.Target();
    }
    /** Nothing is painted for a while, once all has been, and the processor rests. */
    void ExpectRest() {
        (void)window.Picture();
        const int paints = window.Paints();
        const std::clock_t used = std::clock();
        CViewWindow::Rest(500);
        EXPECT_EQ(window.Paints(), paints);
        EXPECT_LT(std::clock() - used, CLOCKS_PER_SEC / 50);
    }
    [[nodiscard]] bool WaitForDrag(EDragState state) {
        return CViewWindow::WaitFor([=, this] { return window.View().GetDragState() == state; });
    }
    /** Grabs the model in the middle and turns it; the button stays down. */
    void Drag() {
        window.MoveTo(middleX, middleY);
        window.Hand().MouseDown();
        ASSERT_TRUE(WaitForDrag(EDragState::Dragging));
        window.MoveTo(middleX + 40, middleY + 30);
        ASSERT_TRUE(
            CViewWindow::WaitFor([this] { return window.View().GetTrackBall().Matrix()[0] < 0.99f; }));
    }
    [[nodiscard]] CImage Take(EPictureOf what) {
        auto picture = window.View().TakePicture(what);
        return picture ? std::move(picture).Value() : CImage{};
    }

    CTestFolder folder;
    CIdleToolState tools;
    CViewWindow window{&tools};
    std::wstring m_path;
    int middleX = 0, middleY = 0;
    int aside = 0;  ///< from the middle to either box
};

bool Differ(const CImage& a, const CImage& b) {
    return a.width != b.width || a.height != b.height || a.rgba != b.rgba;
}

TEST_F(CViewWindowWxTest, PicksAndDeletesOnALongPress) {
    const CImage picture = window.Picture();
    EXPECT_EQ(NodeAt(middleX + aside, middleY), "Right");
    EXPECT_EQ(NodeAt(middleX, middleY), "");
    EXPECT_FALSE(Differ(window.Picture(), picture)) << "picking changed the picture";
    const auto nodes = [this] { return window.Engine().Prepared()->nodes.size(); };
    const std::size_t before = nodes();
    ASSERT_EQ(NodeAt(middleX - aside, middleY), "Left");
    window.MoveTo(middleX - aside, middleY);
    window.Hand().MouseDown();
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return nodes() < before; }));
    window.Hand().MouseUp();
    ASSERT_TRUE(WaitForDrag(EDragState::Idle));
    EXPECT_TRUE(Differ(window.Picture(), picture));
    EXPECT_EQ(NodeAt(middleX - aside, middleY), "");
}

TEST_F(CViewWindowWxTest, DragTurnsTheModelUnderABall) {
    const CImage before = window.Picture();
    Drag();
    const CImage during = window.Picture();
    const CImage model = Take(EPictureOf::Model), all = Take(EPictureOf::ModelAndOverlays);
    EXPECT_TRUE(Differ(model, all)) << "the picture has no ball";
    const int paints = window.Paints();
    window.Hand().MouseUp();
    ASSERT_TRUE(WaitForDrag(EDragState::Idle));
    const CImage after = window.Picture();
    EXPECT_TRUE(Differ(before, after));
    EXPECT_GT(window.Paints(), paints) << "the overlay stays on the display";
    EXPECT_TRUE(Differ(during, after)) << "no overlay was seen";
    EXPECT_FALSE(Differ(model, Take(EPictureOf::ModelAndOverlays))) << "turned or placed otherwise";
    int apart = 0;  // the picture's edges are smooth
    for (std::size_t i = 0; i < after.rgba.size(); ++i) apart += std::abs(after.rgba[i] - model.rgba[i]) > 4;
    EXPECT_LT(apart, 3000) << "lit otherwise";

    // The same path is no reload; a camera takes the turn back.
    const auto turn = window.View().GetTrackBall().Matrix();
    EXPECT_TRUE(window.View().OpenModel(m_path.c_str()));
    EXPECT_EQ(window.View().GetTrackBall().Matrix(), turn);
    window.View().SetFrontCamera();
    EXPECT_FALSE(Differ(window.Picture(), before));
}

TEST_F(CViewWindowWxTest, PicturesNeverShowTheHint) {
    window.View().CloseModel();
    const CImage empty = window.Picture();
    window.View().SetHint({8, 8, std::vector<std::uint8_t>(256, 255)});
    EXPECT_TRUE(Differ(window.Picture(), empty));
    EXPECT_FALSE(Differ(Take(EPictureOf::ModelAndOverlays), empty));
}

TEST_F(CViewWindowWxTest, WheelAndBoxZoom) {
    const float distance = Length(Eye());
    window.MoveTo(middleX, middleY);
    ASSERT_EQ(std::system("xdotool click 4"), 0);
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return Length(Eye()) < distance * 0.99f; }));
    const float fov = window.Engine().GetFovY();
    window.Hand().KeyDown(WXK_CONTROL);
    window.MoveTo(middleX + aside + 80, middleY + 60);
    window.Hand().MouseDown();
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return window.told.size() == 2; }));  // the key, and the button
    const CImage before = window.Picture();
    window.MoveTo(middleX + aside - 80, middleY - 60);
    const CImage during = window.Picture();
    window.Hand().MouseUp();
    window.Hand().KeyUp(WXK_CONTROL);
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return window.Engine().GetFovY() < fov * 0.9f; }));
    EXPECT_TRUE(Differ(before, during)) << "no box was seen";
    (void)window.Picture();
    EXPECT_EQ(NodeAt(middleX, middleY), "Right");
    EXPECT_EQ(NodeAt(5, middleY), "");
}

TEST_F(CViewWindowWxTest, TurnsAndPlaysUntilTold) {
    ExpectRest();
    const auto turned = [&] { return window.Engine().GetRotAngleZ(); };
    const float start = turned();
    window.View().SetRotate(true);
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return std::abs(turned() - start) >= 5; }));
    window.View().SetRotate(false);
    const float still = turned();
    ExpectRest();
    EXPECT_EQ(turned(), still);

    Show(30);
    const float frame = window.Engine().GetFrame();
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return std::abs(window.Engine().GetFrame() - frame) >= 3; }));
    // With nothing shown there is nothing to turn or play.
    window.View().SetRotate(true);
    window.View().CloseModel();
    ExpectRest();
}

TEST_F(CViewWindowWxTest, EditsThatFollowTheHandAreDrawnOntoWhatIsKept) {
    int kept = 0;
    for (int step = 0; step < 6; ++step) {
        ASSERT_TRUE(window.Engine().SetNodeMaterialColor("Right", "", 0.1f * static_cast<float>(step), 1, 0));
        window.View().RedrawQuickly();
        window.View().GetCanvas()->BeginGL();
        window.View().OnPaint();
        kept += window.Engine().IsLastFrameWhole() ? 0 : 1;
    }
    EXPECT_GE(kept, 4);
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return window.Engine().IsLastFrameWhole(); }));
}

TEST_F(CViewWindowWxTest, PansByTwoButtonsAndCentersByADoubleClick) {
    const auto seen = [this]() -> const CSeenView& { return window.Engine().SeenView(); };
    window.MoveTo(middleX, middleY);
    window.Hand().MouseDown(wxMOUSE_BTN_MIDDLE);
    window.MoveTo(middleX + aside, middleY);
    window.Hand().MouseUp(wxMOUSE_BTN_MIDDLE);
    (void)window.Picture();
    EXPECT_EQ(NodeAt(middleX, middleY), "Left");
    window.Hand().KeyDown(WXK_SHIFT);
    window.Hand().MouseDown(wxMOUSE_BTN_RIGHT);
    window.MoveTo(middleX - aside, middleY);
    window.Hand().MouseUp(wxMOUSE_BTN_RIGHT);
    (void)window.Picture();
    EXPECT_EQ(NodeAt(middleX, middleY), "Right");
    EXPECT_EQ(std::count(window.told.begin(), window.told.end(), "right"), 0);
    window.Hand().MouseClick(wxMOUSE_BTN_RIGHT);  // without a drag it is a click as any other
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return window.told.back() == "right"; }));
    window.Hand().KeyUp(WXK_SHIFT);

    window.View().SetFrontCamera();
    EXPECT_EQ(seen().shift, CVec3d{});
    window.MoveTo(middleX - aside, middleY);
    window.Hand().MouseDblClick();
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return seen().aside != CVec3d{}; }));
    ASSERT_TRUE(WaitForDrag(EDragState::Idle));
    (void)window.Picture();
    EXPECT_EQ(NodeAt(middleX, middleY), "Left");
}

TEST_F(CViewWindowWxTest, KeysAndAltZoomAndTurn) {
    window.MoveTo(middleX, middleY);
    const auto turn = window.View().GetTrackBall().Matrix();
    window.Hand().Char(WXK_RIGHT);
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return window.View().GetTrackBall().Matrix() != turn; }));
    float distance = Length(Eye());
    for (const int key : {int{WXK_NUMPAD_ADD}, int{'='}}) {
        window.Hand().Char(key);
        ASSERT_TRUE(CViewWindow::WaitFor([&] { return Length(Eye()) < distance * 0.95f; })) << key;
        distance = Length(Eye());
    }
    window.Hand().Char('-', wxMOD_SHIFT);
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return Length(Eye()) > distance * 1.01f; }));
    EXPECT_LT(Length(Eye()), distance * 1.05f);
    // Not by the hand: the window manager of the tests keeps this wheel to itself.
    wxMouseEvent wheel(wxEVT_MOUSEWHEEL);
    wheel.SetAltDown(true);
    wheel.m_wheelDelta = wheel.m_wheelRotation = 120;
    wheel.SetPosition({middleX + aside, middleY});
    wxWindow* canvas = window.View().GetCanvas()->GetWindow();
    canvas->ProcessWindowEvent(wheel);
    EXPECT_NE(window.Engine().SeenView().shift, CVec3d{});
    wxZoomGestureEvent spread;
    spread.SetGestureStart();
    spread.SetZoomFactor(2);
    spread.SetPosition({middleX, middleY});
    distance = Length(Eye());
    canvas->ProcessWindowEvent(spread);
    EXPECT_NEAR(Length(Eye()), distance / 2, distance * 0.01f);
}

TEST_F(CViewWindowWxTest, EndsInTheMidstOfADrag) {
    window.View().SetRotate(true);
    Drag();
    // The fixture takes the window down while the button is still held.
}

}  // namespace
