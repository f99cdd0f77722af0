// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <cmath>

#include "engine/C3dsDisplayWrap.h"
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
    [[nodiscard]] std::size_t NodeCount() { return window.Engine().Prepared()->nodes.size(); }
    [[nodiscard]] CVec3 Eye() {
        const C3dsDisplayWrap& e = window.Engine();
        return {e.GetEyeX() - e.GetXOrg(), e.GetEyeY() - e.GetYOrg(), e.GetEyeZ() - e.GetZOrg()};
    }
    /** Nothing is painted for a while, once all has been. */
    void ExpectRest(int periodMs) {
        (void)window.Picture();
        const int paints = window.Paints();
        CViewWindow::Rest(periodMs);
        EXPECT_EQ(window.Paints(), paints);
    }
    [[nodiscard]] bool IsDragging() { return window.View().GetDragState() == EDragState::Dragging; }

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

int Red(const CImage& picture, int x, int y) {
    return picture.Pixel(x, y)[0];
}

TEST_F(CViewWindowWxTest, ShowsAndPicksNodes) {
    const CImage picture = window.Picture();
    EXPECT_GT(Red(picture, middleX - aside, middleY), 100);
    EXPECT_GT(Red(picture, middleX + aside, middleY), 100);
    EXPECT_EQ(Red(picture, middleX, middleY), 0);
    EXPECT_EQ(NodeAt(middleX - aside, middleY), "Left");
    EXPECT_EQ(NodeAt(middleX + aside, middleY), "Right");
    EXPECT_EQ(NodeAt(middleX, middleY), "");
    EXPECT_EQ(NodeAt(5, 5), "");
    EXPECT_FALSE(Differ(window.Picture(), picture)) << "picking changed the picture";
}

TEST_F(CViewWindowWxTest, DragTurnsTheModel) {
    const CImage before = window.Picture();
    window.MoveTo(middleX, middleY);
    window.Hand().MouseDown();
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return IsDragging(); }));
    window.MoveTo(middleX + 40, middleY + 30);
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return window.View().GetTrackBall().Matrix()[0] < 0.99f; }));
    const CImage during = window.Picture();
    const int paints = window.Paints();
    window.Hand().MouseUp();
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return window.View().GetDragState() == EDragState::Idle; }));
    const CImage after = window.Picture();
    EXPECT_TRUE(Differ(before, after));
    EXPECT_GT(window.Paints(), paints) << "the overlay stays on the display";
    EXPECT_TRUE(Differ(during, after)) << "no overlay was seen";
    EXPECT_EQ(window.told, std::vector<std::string>{"left"});

    // The same path is no reload; a camera takes the turn back.
    const auto turn = window.View().GetTrackBall().Matrix();
    EXPECT_TRUE(window.View().OpenModel(m_path.c_str()));
    EXPECT_EQ(window.View().GetTrackBall().Matrix(), turn);
    window.View().SetFrontCamera();
    EXPECT_FALSE(Differ(window.Picture(), before));
}

TEST_F(CViewWindowWxTest, PicturesShowOverlaysWhenAskedAndNeverTheHint) {
    const auto take = [this](EPictureOf what) {
        auto picture = window.View().TakePicture(what);
        return picture ? std::move(picture).Value() : CImage{};
    };
    window.View().SetPivotOffset(2, 0, 3);
    window.View().SetScale(1, 1, 0.5);
    window.MoveTo(middleX, middleY);
    window.Hand().MouseDown();
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return IsDragging(); }));
    window.MoveTo(middleX + 40, middleY + 30);
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return window.View().GetTrackBall().Matrix()[0] < 0.99f; }));
    const CImage model = take(EPictureOf::Model), all = take(EPictureOf::ModelAndOverlays);
    EXPECT_TRUE(Differ(model, all)) << "the ball is missing";
    window.Hand().MouseUp();
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return window.View().GetDragState() == EDragState::Idle; }));
    EXPECT_FALSE(Differ(model, take(EPictureOf::ModelAndOverlays))) << "turned or placed otherwise";
    const CImage shown = window.Picture();  // without the picture's smooth edges
    int apart = 0;
    for (std::size_t i = 0; i < shown.rgba.size(); ++i) apart += std::abs(shown.rgba[i] - model.rgba[i]) > 4;
    EXPECT_LT(apart, 3000) << "lit otherwise";

    window.View().CloseModel();
    const CImage empty = window.Picture();
    window.View().SetHint({8, 8, std::vector<std::uint8_t>(256, 255)});
    EXPECT_TRUE(Differ(window.Picture(), empty));
    EXPECT_FALSE(Differ(take(EPictureOf::ModelAndOverlays), empty));
}

TEST_F(CViewWindowWxTest, WheelZooms) {
    const float distance = Length(Eye());
    window.MoveTo(middleX, middleY);
    ASSERT_EQ(std::system("xdotool click 4"), 0);
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return Length(Eye()) < distance * 0.99f; }));
    ASSERT_EQ(std::system("xdotool click 5 click 5"), 0);
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return Length(Eye()) > distance * 1.01f; }));
}

TEST_F(CViewWindowWxTest, ControlDragZoomsToTheBox) {
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

TEST_F(CViewWindowWxTest, LongPressDeletesTheNode) {
    const std::size_t nodes = NodeCount();
    window.MoveTo(middleX - aside, middleY);
    window.Hand().MouseDown();
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return NodeCount() < nodes; }));
    window.Hand().MouseUp();
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return window.View().GetDragState() == EDragState::Idle; }));
    const CImage picture = window.Picture();
    EXPECT_EQ(Red(picture, middleX - aside, middleY), 0);
    EXPECT_GT(Red(picture, middleX + aside, middleY), 100);
    EXPECT_EQ(NodeAt(middleX - aside, middleY), "");
    EXPECT_EQ(NodeAt(middleX + aside, middleY), "Right");
}

TEST_F(CViewWindowWxTest, TurnsByItselfUntilTold) {
    const CImage before = window.Picture();
    window.View().SetRotate(true);
    const auto turned = [&] { return window.Engine().GetRotAngleZ(); };
    const float start = turned();
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return std::abs(turned() - start) >= 5; }));
    window.View().SetRotate(false);
    EXPECT_TRUE(Differ(before, window.Picture()));
    const float still = turned();
    ExpectRest(300);
    EXPECT_EQ(turned(), still);

    // With nothing shown there is nothing to turn.
    window.View().SetRotate(true);
    window.View().CloseModel();
    ExpectRest(300);
}

TEST_F(CViewWindowWxTest, PlaysAnimationsUntilClosed) {
    Show(30);
    const float frame = window.Engine().GetFrame();
    ASSERT_TRUE(CViewWindow::WaitFor([&] { return std::abs(window.Engine().GetFrame() - frame) >= 3; }));
    window.View().CloseModel();
    EXPECT_TRUE(window.View().GetFileName().empty());
    ExpectRest(300);
}

TEST_F(CViewWindowWxTest, RestsWhenNothingMoves) {
    const auto processorSeconds = [] {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        const auto seconds = [](const timeval& t) {
            return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
        };
        return seconds(usage.ru_utime) + seconds(usage.ru_stime);
    };
    (void)window.Picture();
    const double before = processorSeconds();
    CViewWindow::Rest(1000);
    EXPECT_LT(processorSeconds() - before, 0.02);
    ExpectRest(300);
}

TEST_F(CViewWindowWxTest, TellsItsOwnerOfKeysAndButtons) {
    window.MoveTo(middleX, middleY);
    window.Hand().Char(WXK_SPACE);
    window.Hand().Char(WXK_BACK);
    window.Hand().Char(WXK_ESCAPE);
    window.Hand().MouseClick(wxMOUSE_BTN_RIGHT);
    window.Hand().MouseClick(wxMOUSE_BTN_LEFT);
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return window.told.size() >= 5; }));
    EXPECT_EQ(window.told, (std::vector<std::string>{"key 32", "key 8", "key 27", "right", "left"}));
}

TEST_F(CViewWindowWxTest, EndsInTheMidstOfADrag) {
    window.View().SetRotate(true);
    window.MoveTo(middleX, middleY);
    window.Hand().MouseDown();
    ASSERT_TRUE(CViewWindow::WaitFor([this] { return IsDragging(); }));
    // The fixture takes the window down while the button is still held.
}

}  // namespace
