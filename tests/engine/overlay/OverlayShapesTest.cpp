// SPDX-License-Identifier: MIT
#include "engine/overlay/overlay_shapes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "model/prepare/CPreparedScene.h"

namespace {

/** True when a line ends within a hair of the point. */
bool Touches(const overlay_shapes::CLines& lines, CVec3 point) {
    return std::any_of(lines.begin(), lines.end(), [point](CVec3 p) { return Length(p - point) < 1e-3f; });
}

TEST(OverlayShapesTest, ShowBoundsAndWhatCamerasSeeAndLightsReach) {
    const CBox box{{-1, -2, -3}, {4, 5, 6}};
    const auto edges = overlay_shapes::BoxEdges(box);
    for (unsigned i = 0; i < 8; ++i) EXPECT_TRUE(Touches(edges, box.Corner(i)));
    EXPECT_TRUE(overlay_shapes::BoxEdges({}).empty());

    const auto camera = overlay_shapes::Camera({.position = {0, -10, 0}, .target = {}, .fovDeg = 90}, 0.5f);
    EXPECT_TRUE(Touches(camera, {10, 0, 7.5f}));
    EXPECT_TRUE(Touches(camera, {-10, 0, -7.5f}));

    const CPreparedLight light{.position = {0, 0, 10}, .target = {}, .hotspotDeg = 30, .falloffDeg = 90};
    float widest = 0;
    for (const CVec3 p : overlay_shapes::Spot(light, 1)) widest = std::max(widest, std::hypot(p.x, p.y));
    EXPECT_NEAR(widest, 10, 1e-3f);
}

TEST(OverlayShapesTest, OddCamerasAndLightsGiveFiniteLines) {
    for (const CVec3 target : {CVec3{}, CVec3{0, 0, 5}, CVec3{0, 0, -5}, CVec3{1e-20f, 0, 0}}) {
        auto lines = overlay_shapes::Camera({.target = target, .fovDeg = 179}, 1);
        for (const CVec3 p : overlay_shapes::Spot({.target = target, .falloffDeg = 180}, 1))
            lines.push_back(p);
        for (const CVec3 p : lines) EXPECT_TRUE(IsFinite(p));
    }
}

}  // namespace
