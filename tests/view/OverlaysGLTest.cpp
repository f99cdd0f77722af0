// SPDX-License-Identifier: MIT
#include <GL/gl.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>

#include "base/math/C2DRect.h"
#include "engine/CPictureTest.h"
#include "engine/gl/COffscreenContext.h"
#include "row_name.h"
#include "view/ui/CTrackBall.h"
#include "view/ui/zoom_box.h"
#include "view/view_matrices.h"

namespace {

constexpr int kWidth = 400, kHeight = 300;

class COverlaysGLTest : public testing::Test {
  protected:
    void SetUp() override {
        auto context = COffscreenContext::Create(kWidth, kHeight);
        ASSERT_TRUE(context) << context.Error().Text();
        m_context = std::make_unique<COffscreenContext>(std::move(context).Value());
        (void)m_context->MakeCurrent();
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);  // as a wire-frame view leaves it
        glEnable(GL_LIGHTING);
    }
    [[nodiscard]] CImage Picture() {
        auto picture = m_context->ReadPixels();
        return picture ? std::move(picture).Value() : CImage{};
    }
    static void LookFrom(CVec3d eye) {
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixd(view_matrices::Looking(eye, {0, 0, 1}).projection.m.data());
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
    }
    std::unique_ptr<COffscreenContext> m_context;
};

int Brightness(const CImage& picture, int x, int y) {
    const CColor color = ColorAt(picture, x, y);
    return color[0] + color[1] + color[2];
}

TEST_F(COverlaysGLTest, BallIsDrawnOnlyInADragAndRoundItsOutline) {
    LookFrom({0, -2.7, 0});
    glClearColor(0, 0.5f, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    CTrackBall ball(true);
    ball.SetBall(2, 0, -2.7f, 0);
    const int empty = Brightness(Picture(), 0, 0);
    const auto before = ReadGlState();
    ball.DrawOverlay();
    EXPECT_EQ(Brightness(Picture(), 200 - 144, 150), empty);

    ball.Begin(200, 150);
    ball.DrawOverlay();
    EXPECT_EQ(ReadGlState(), before);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    const CImage picture = Picture();
    // The outline of a unit ball seen from 2.7: tangent 1 / sqrt(2.7^2 - 1), at 362 pixels for a tangent
    // of 1.
    int left = 0, right = kWidth - 1;
    while (left < kWidth && Brightness(picture, left, 140) < 700) ++left;
    while (right > 0 && Brightness(picture, right, 140) < 700) --right;
    const double radius = std::sqrt(144.4 * 144.4 - 10 * 10);
    EXPECT_NEAR(left, 200 - radius, 2);
    EXPECT_NEAR(right, 200 + radius, 2);

    int covered = 0;
    for (int y = 60; y < 240; ++y)
        for (int x = 110; x < 290; ++x) covered += ColorAt(picture, x, y)[1] < 90;
    EXPECT_LT(covered, 180 * 180 / 8) << "the model cannot be seen through it";

    CTrackBall without(false);
    glClear(GL_COLOR_BUFFER_BIT);
    without.SetBall(2, 0, -2.7f, 0);
    without.Begin(200, 150);
    without.DrawOverlay();
    EXPECT_EQ(Brightness(Picture(), left, 140), empty);
}

struct CBoxCase {
    const char* name;
    C2DRect dragged;
};

class CZoomBoxGLTest : public COverlaysGLTest, public testing::WithParamInterface<CBoxCase> {};

TEST_P(CZoomBoxGLTest, CoversWhatWasDragged) {
    LookFrom({0, -2.7, 0});
    glClearColor(1, 1, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    const auto before = ReadGlState();
    DrawZoomBox(GetParam().dragged);
    EXPECT_EQ(ReadGlState(), before);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    const CImage picture = Picture();
    for (const auto& [x, y, inside] :
         {std::array{52, 42, 1}, std::array{348, 58, 1}, std::array{200, 50, 1}, std::array{47, 50, 0},
          std::array{353, 50, 0}, std::array{200, 36, 0}, std::array{200, 64, 0}, std::array{200, 250, 0}}) {
        // Half of white and half of (0.39, 0.46, 0.77).
        EXPECT_TRUE(HasColor(picture, x, y, inside ? CColor{177, 186, 226} : CColor{255, 255, 255}, 2));
    }
}

const CBoxCase kDrags[] = {{"Downwards", C2DRect(50, 40, 350, 60)},
                           {"UpAndLeft", C2DRect(350, 60, 50, 40)},
                           {"UpAndRight", C2DRect(50, 60, 350, 40)}};
INSTANTIATE_TEST_SUITE_P(Drags, CZoomBoxGLTest, testing::ValuesIn(kDrags), kRowName);

TEST_F(COverlaysGLTest, BoxWithoutAreaOrViewportIsHarmless) {
    DrawZoomBox(C2DRect(20, 20, 20, 20));
    glViewport(0, 0, 0, 0);
    DrawZoomBox(C2DRect(20, 20, 90, 90));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

}  // namespace
