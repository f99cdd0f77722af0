// SPDX-License-Identifier: MIT
#include "camera/framing.h"

#include <gtest/gtest.h>

#include "model/prepare/CPreparedScene.h"

namespace {
/** Objects of half size 1 at places along x. */
CPreparedScene ObjectsAt(std::initializer_list<float> places) {
    CPreparedScene scene;
    for (const float x : places) {
        CPreparedNode node;
        node.mesh = 0;
        node.worldBounds.Add(CVec3{x - 1, -1, -1});
        node.worldBounds.Add(CVec3{x + 1, 1, 1});
        scene.bounds.Add(node.worldBounds);
        scene.nodes.push_back(node);
    }
    scene.boundingSphere = {scene.bounds.Center(), Length(scene.bounds.max - scene.bounds.min) * 0.5f};
    return scene;
}

TEST(FramingTest, HoldsAllThatCanBeSeenTogether) {
    const CPreparedScene scene = ObjectsAt({0, 10, 20});
    EXPECT_EQ(FramingSphere(scene).radius, scene.boundingSphere.radius);
    const CSphere sphere = FramingSphere(ObjectsAt({0, 3, 5000}));
    EXPECT_LT(sphere.radius, 10);
    EXPECT_NEAR(sphere.center.x, 1.5f, 0.01f);
}

TEST(FramingTest, WithoutTrianglesIsRoundLightsAndCameras) {
    CPreparedScene scene;
    EXPECT_EQ(FramingSphere(scene).radius, 0);
    scene.lights.resize(2);
    scene.lights[1].position = {8, 0, 0};
    EXPECT_NEAR(FramingSphere(scene).center.x, 4, 1e-5f);
}
}  // namespace
