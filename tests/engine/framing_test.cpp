// SPDX-License-Identifier: MIT
#include "engine/framing.h"

#include <gtest/gtest.h>

#include "model/CPreparedScene.h"

namespace {
/** Objects of the given half size at places along x. */
CPreparedScene ObjectsAt(std::initializer_list<float> places, float halfSize) {
    CPreparedScene scene;
    for (const float x : places) {
        CPreparedNode node;
        node.mesh = 0;
        node.worldBounds.Add(CVec3{x - halfSize, -halfSize, -halfSize});
        node.worldBounds.Add(CVec3{x + halfSize, halfSize, halfSize});
        scene.bounds.Add(node.worldBounds);
        scene.nodes.push_back(node);
    }
    scene.boundingSphere = {scene.bounds.Center(), Length(scene.bounds.max - scene.bounds.min) * 0.5f};
    return scene;
}

TEST(FramingSphere, HoldsAllThatCanBeSeen) {
    const CPreparedScene scene = ObjectsAt({0, 10, 20}, 1);
    EXPECT_EQ(FramingSphere(scene).radius, scene.boundingSphere.radius);
}

TEST(FramingSphere, LeavesOutWhatIsTooFarToBeSeenWithTheRest) {
    const CSphere sphere = FramingSphere(ObjectsAt({0, 3, 5000}, 1));
    EXPECT_LT(sphere.radius, 10);
    EXPECT_NEAR(sphere.center.x, 1.5f, 0.01f);
}

TEST(FramingSphere, WithoutTrianglesIsRoundLightsAndCameras) {
    CPreparedScene scene;
    EXPECT_EQ(FramingSphere(scene).radius, 0);
    scene.lights.resize(2);
    scene.lights[1].position = {8, 0, 0};
    EXPECT_NEAR(FramingSphere(scene).center.x, 4, 1e-5f);
}
}  // namespace
