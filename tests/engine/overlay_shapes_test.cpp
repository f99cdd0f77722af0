// SPDX-License-Identifier: MIT
#include "engine/overlay_shapes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "model/CPreparedScene.h"

namespace {

/** True when a line ends within a hair of the point. */
bool Touches(const overlay_shapes::CLines& lines, CVec3 point) {
    return std::any_of(lines.begin(), lines.end(), [point](CVec3 p) { return Length(p - point) < 1e-3f; });
}

TEST(overlay_shapes, BoxHasItsTwelveEdges) {
    CBox box;
    box.Add(CVec3{-1, -2, -3});
    box.Add(CVec3{4, 5, 6});
    const auto lines = overlay_shapes::BoxEdges(box);
    EXPECT_EQ(lines.size(), 24u);
    for (unsigned i = 0; i < 8; ++i) EXPECT_TRUE(Touches(lines, box.Corner(i)));
    EXPECT_TRUE(overlay_shapes::BoxEdges({}).empty());
}

TEST(overlay_shapes, CameraShowsWhatItSeesAtItsTarget) {
    CPreparedCamera camera;
    camera.position = {0, -10, 0};
    camera.target = {0, 0, 0};
    camera.fovDeg = 90;
    const auto lines = overlay_shapes::Camera(camera, 0.5f);
    EXPECT_TRUE(Touches(lines, {10, 0, 7.5f}));
    EXPECT_TRUE(Touches(lines, {-10, 0, -7.5f}));
}

TEST(overlay_shapes, SpotShowsWhereItsLightEnds) {
    CPreparedLight light;
    light.position = {0, 0, 10};
    light.target = {0, 0, 0};
    light.hotspotDeg = 30;
    light.falloffDeg = 90;
    float widest = 0;
    for (const CVec3 p : overlay_shapes::Spot(light, 1)) widest = std::max(widest, std::hypot(p.x, p.y));
    EXPECT_NEAR(widest, 10, 1e-3f);
}

/** Directions of any kind, and none at all, give finite lines. */
TEST(overlay_shapes, OddCamerasAndLightsGiveFiniteLines) {
    for (const CVec3 target : {CVec3{}, CVec3{0, 0, 5}, CVec3{0, 0, -5}, CVec3{1e-20f, 0, 0}}) {
        CPreparedCamera camera;
        camera.target = target;
        camera.fovDeg = 179;
        CPreparedLight light;
        light.target = target;
        light.falloffDeg = 180;
        for (const CVec3 p : overlay_shapes::Camera(camera, 1)) EXPECT_TRUE(IsFinite(p));
        for (const CVec3 p : overlay_shapes::Spot(light, 1)) EXPECT_TRUE(IsFinite(p));
    }
}

}  // namespace
