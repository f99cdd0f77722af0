// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>
#include <vector>

#include "engine/CPictureTest.h"
#include "engine/draw/triangle_order.h"
#include "engine/gl/CGlTexture.h"
#include "engine/pipeline/CFrameView.h"

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

template <class TIndex>
void ExpectOrdered() {
    std::mt19937 random(3);
    std::uniform_real_distribution<float> number(-5, 5);
    std::vector<CPreparedVertex> vertices(300);
    for (CPreparedVertex& vertex : vertices) {
        for (float& value : vertex.position) value = number(random);
    }
    std::vector<TIndex> indices;
    for (int i = 0; i < 3000; ++i) indices.push_back(static_cast<TIndex>(random() % vertices.size()));
    const std::array<double, 4> row{0.5, -2, 1, 7};
    std::vector<TIndex> ordered;
    const CDepthSpan range = OrderBackToFront<TIndex>(vertices, indices, row, ordered);

    const auto depth = [&](std::size_t triangle) {
        double sum = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            const CVec3 p = vertices[ordered[triangle * 3 + k]].Position();
            sum += (row[0] * p.x + row[1] * p.y + row[2] * p.z + row[3]) / 3;
        }
        return sum;
    };
    ASSERT_EQ(ordered.size(), indices.size());
    const double step = (range.max - range.min) / 65535.0 + 1e-4;
    for (std::size_t i = 1; i < ordered.size() / 3; ++i) EXPECT_LE(depth(i), depth(i - 1) + step);
    EXPECT_NEAR(depth(0), range.max, step);
    const auto triangles = [](const std::vector<TIndex>& list) {
        std::multiset<std::array<TIndex, 3>> result;
        for (std::size_t i = 0; i < list.size(); i += 3) result.insert({list[i], list[i + 1], list[i + 2]});
        return result;
    };
    EXPECT_EQ(triangles(ordered), triangles(indices));
}

TEST(TriangleOrderTest, KeepsEveryTriangleAndOrdersThemFromBackToFront) {
    ExpectOrdered<std::uint16_t>();
    ExpectOrdered<std::uint32_t>();
}

TEST(TriangleOrderTest, EqualDepthsKeepTheirOrderAndNoneIsFine) {
    const std::vector<CPreparedVertex> vertices(3);
    for (const std::vector<std::uint16_t>& indices :
         {{0, 1, 2, 2, 1, 0, 1, 2, 0}, std::vector<std::uint16_t>{}}) {
        std::vector<std::uint16_t> ordered{9};
        OrderBackToFront<std::uint16_t>(vertices, indices, {1, 2, 3, 4}, ordered);
        EXPECT_EQ(ordered, indices);
    }
}

TEST(TextureSizeTest, ScalingDownAveragesAndKeepsTheMeanColour) {
    const CImage image = test_scenes::MakeImage(5, 3, [](int x, int) -> std::array<std::uint8_t, 4> {
        return {static_cast<std::uint8_t>(x % 2 == 0 ? 200 : 100), 10, 255, 255};
    });
    const CImage half = ResizeForTexture(image, 2, 1);
    ASSERT_EQ(half.rgba.size(), 8u);
    EXPECT_EQ(half.Pixel(0, 0)[0], 150);  // columns 0 and 1
    EXPECT_EQ(half.Pixel(1, 0)[0], 167);  // columns 2 to 4
    EXPECT_EQ(half.Pixel(1, 0)[1], 10);
    const CImage larger = ResizeForTexture(image, 8, 4);
    EXPECT_EQ(larger.rgba.size(), 8u * 4 * 4);
    EXPECT_EQ(larger.Pixel(7, 3)[0], 200);
}

}  // namespace
