// SPDX-License-Identifier: MIT
#include "engine/pipeline/CFrameView.h"

#include <gtest/gtest.h>

#include <cmath>

#include "engine/CPictureTest.h"

namespace {

TEST(FrameViewTest, FindsTheEyeBehindAnyLens) {
    const CVec3 eye{3, -4, 5};
    CMatrix4d lens = CameraMatrix(eye, {0, 1, 0}, 30, 1.5f);
    CMatrix4d region;  // a part of the view, as zooming and picking cut it out
    region.m[0] = 40;
    region.m[5] = 10;
    region.m[12] = -7;
    for (const CMatrix4d& projection : {lens, region * lens}) {
        const CFrameView view = CFrameView::FromMatrices(projection, {});
        EXPECT_TRUE(view.perspective);
        EXPECT_LT(std::hypot(view.eye[0] - 3, view.eye[1] + 4, view.eye[2] - 5), 1e-5);
        // Where a point lands, the way to the viewer is the way from the point to the eye.
        const CVec3 point{1, 2, 3};
        const std::array<double, 4> clip = projection.Transform({point.x, point.y, point.z, 1});
        const std::array<int, 4> viewport{7, -3, 640, 200};
        const double x = 7 + 320 * (1 + clip[0] / clip[3]), y = -3 + 100 * (1 + clip[1] / clip[3]);
        const std::array<float, 9> m = view.PixelToViewer(viewport);
        const auto towards = [&](std::size_t i) {
            return static_cast<float>(m[i] * x + m[i + 3] * y + m[i + 6]);
        };
        const CVec3 found{towards(0), towards(1), towards(2)}, wanted = eye - point;
        EXPECT_NEAR(Dot(found, wanted) / (Length(found) * Length(wanted)), 1, 1e-6);
    }
}

TEST(FrameViewTest, ParallelViewHasADirectionInsteadOfAnEye) {
    CMatrix4d projection;
    projection.m[10] = -1;  // as glOrtho looks along -z
    const CFrameView view = CFrameView::FromMatrices(projection, {});
    EXPECT_FALSE(view.perspective);
    EXPECT_EQ(view.viewer, (std::array<float, 4>{0, 0, 1, 0}));
    EXPECT_EQ(view.PixelToViewer({0, 0, 9, 9}), (std::array<float, 9>{0, 0, 0, 0, 0, 0, 0, 0, 1}));
}

TEST(FrameViewTest, LeavesOutBoxesBeyondOneSideOnly) {
    const CFrameView view = CFrameView::FromMatrices(CameraMatrix({0, -10, 0}, {}, 45, 1), {});
    const CBox aboutTheEye{{-1000, -1000, -1000}, {1000, 1000, 1000}}, cutByASide{{3, -1, -1}, {50, 1, 1}},
        behind{{-1, -30, -1}, {1, -20, 1}}, aside{{40, -1, -1}, {50, 1, 1}}, above{{-1, -1, 20}, {1, 1, 30}},
        beyondTheFarPlane{{-1, 200, -1}, {1, 300, 1}};
    for (const CBox& box : {CBox{{-1, -1, -1}, {1, 1, 1}}, aboutTheEye, cutByASide})
        EXPECT_TRUE(view.MayShow(box)) << box.min.x;
    for (const CBox& box : {behind, aside, above, beyondTheFarPlane, CBox{}})
        EXPECT_FALSE(view.MayShow(box)) << box.min.x << " " << box.min.y;
}

}  // namespace
