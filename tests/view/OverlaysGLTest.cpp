// SPDX-License-Identifier: MIT
#include <GL/gl.h>
#include <gtest/gtest.h>

#include "base/math/C2DRect.h"
#include "engine/CPictureTest.h"
#include "row_name.h"
#include "view/ui/CTrackBall.h"
#include "view/ui/zoom_box.h"

namespace {

class COverlaysGLTest : public CPictureTest {
  protected:
    void SetUp() override {
        CPictureTest::SetUp();
        LookFrom({0, -2.7f, 0});
        Place();
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);  // as a wire-frame view leaves it
        glEnable(GL_LIGHTING);
        m_state = ReadGlState();
    }
    /** What is there now; no overlay changes the state. */
    CImage Picture() {
        EXPECT_EQ(ReadGlState(), m_state);
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        return Context().ReadPixels().Value();
    }
    void TearDown() override {
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        glDisable(GL_LIGHTING);
    }
    std::vector<double> m_state;
};

TEST_F(COverlaysGLTest, BallIsDrawnOnlyInADrag) {
    CTrackBall ball(true), without(false);
    ball.DrawOverlay();
    for (CTrackBall* each : {&ball, &without}) each->SetBall(2, 0, -2.7f, 0);
    ball.DrawOverlay();
    without.Begin(160, 120);
    without.DrawOverlay();
    EXPECT_EQ(CountDrawn(Picture()), 0);
    ball.Begin(160, 120);
    ball.DrawOverlay();
    EXPECT_TRUE(MatchesGolden(Picture(), "trackball"));
}

struct CBoxCase {
    const char* name;
    C2DRect dragged;
};

class CZoomBoxGLTest : public COverlaysGLTest, public testing::WithParamInterface<CBoxCase> {};

TEST_P(CZoomBoxGLTest, CoversWhatWasDragged) {
    DrawZoomBox(GetParam().dragged);
    DrawZoomBox(C2DRect(20, 20, 20, 20));  // without area
    EXPECT_TRUE(MatchesGolden(Picture(), "zoom_box"));
}

const CBoxCase kDrags[] = {{"Downwards", C2DRect(50, 40, 300, 60)},
                           {"UpAndLeft", C2DRect(300, 60, 50, 40)},
                           {"UpAndRight", C2DRect(50, 60, 300, 40)}};
INSTANTIATE_TEST_SUITE_P(Drags, CZoomBoxGLTest, testing::ValuesIn(kDrags), kRowName);

}  // namespace
