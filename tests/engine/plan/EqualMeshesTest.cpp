// SPDX-License-Identifier: MIT
#include "engine/plan/CEqualMeshes.h"

#include <gtest/gtest.h>

#include "engine/pipeline/CFrameView.h"
#include "engine/plan/CScreenScale.h"
#include "model/prepare/CPreparedScene.h"

namespace {

CPreparedMesh Triangle() {
    CPreparedMesh mesh;
    mesh.vertices = {
        {{0, 0, 0}, {0, 0, 32767, 0}}, {{1, 0, 0}, {0, 0, 32767, 0}}, {{0, 1, 0}, {0, 0, 32767, 0}}};
    mesh.indices16 = {0, 1, 2};
    mesh.batches = {{0, 0, 3}};
    for (const CPreparedVertex& vertex : mesh.vertices) mesh.bounds.Add(vertex.Position());
    return mesh;
}

/** Four nodes in one place, each with a mesh of its own, all alike. */
struct CFourAlike {
    CPreparedScene scene;
    CEqualMeshes equal;

    CFourAlike() {
        for (int i = 0; i < 4; ++i) {
            scene.meshes.push_back(Triangle());
            CPreparedNode node;
            node.mesh = i;
            scene.nodes.push_back(node);
        }
    }
    [[nodiscard]] std::vector<bool> Repeated() {
        equal.Update(scene);
        return equal.FindRepeated(scene);
    }
};

TEST(EqualMeshesTest, OnlyTheFirstOfAlikeNodesIsNotRepeated) {
    CFourAlike four;
    EXPECT_EQ(four.Repeated(), (std::vector<bool>{false, true, true, true}));
    four.scene.nodes[0].visible = false;
    EXPECT_EQ(four.Repeated(), (std::vector<bool>{false, false, true, true}));
}

TEST(EqualMeshesTest, WhateverDiffersIsDrawn) {
    using CChange = void (*)(CPreparedNode&, CPreparedMesh&);
    for (const CChange change :
         {CChange([](auto&node, auto&) {
              node.meshToWorld = CMat4::Translation({0, 0, 1e-3f});
          }),
          CChange([](auto&, auto&mesh) { mesh.vertices[2].normal[1] = 1; }),
          CChange([](auto&, auto&mesh) { std::swap(mesh.indices16[0], mesh.indices16[1]); }),
          CChange([](auto&, auto&mesh) { mesh.batches[0].material = 1; }),
          CChange([](auto&, auto&mesh) { mesh.texCoords.resize(3); })}) {
        CFourAlike four;
        change(four.scene.nodes[1], four.scene.meshes[1]);
        EXPECT_EQ(four.Repeated(), (std::vector<bool>{false, false, true, true}));
    }
}

TEST(EqualMeshesTest, InstancesInOnePlaceAreAlikeAndFreedMeshesStaySo) {
    CFourAlike four;
    four.scene.nodes[3].mesh = 0;
    EXPECT_EQ(four.Repeated(), (std::vector<bool>{false, true, true, true}));
    for (CPreparedMesh& mesh : four.scene.meshes) {
        mesh.vertices.clear();
        mesh.indices16.clear();
    }
    EXPECT_EQ(four.Repeated(), (std::vector<bool>{false, true, true, true}));
}

/** Looks along -z from the origin, 90 degrees wide. */
CFrameView View() {
    CMatrix4d projection;
    projection.m = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1.002, -1, 0, 0, -2.002, 0};
    return CFrameView::FromMatrices(projection, {});
}

CPreparedNode NodeWithBox(CVec3 low, CVec3 high) {
    CPreparedNode node;
    node.worldBounds.Add(low);
    node.worldBounds.Add(high);
    return node;
}

TEST(ScreenScaleTest, MeasuresTheNearSideAndTheRectangleWithinTheView) {
    const CScreenScale scale(View(), 200, 100);
    const CNodeOnScreen inside = scale.Of(NodeWithBox({-5, -5, -10}, {5, 5, -10}));
    EXPECT_NEAR(inside.pixelsPerUnit, 10, 0.01);  // 100 pixels to the right are 10 units
    EXPECT_NEAR(inside.pixels, 100 * 50, 1);
    const CNodeOnScreen half = scale.Of(NodeWithBox({0, -10, -10}, {1000, 10, -10}));
    EXPECT_NEAR(half.pixels, 100 * 100, 1);
    CPreparedNode enlarged = NodeWithBox({-1, -1, -20}, {1, 1, -10});
    enlarged.meshToWorld = CMat4::Scale({1, 3, 2});
    EXPECT_NEAR(scale.Of(enlarged).pixelsPerUnit, 30, 0.01);
}

TEST(ScreenScaleTest, ANodeRoundTheEyeFillsTheView) {
    const CNodeOnScreen round = CScreenScale(View(), 200, 100).Of(NodeWithBox({-1, -1, -1}, {1, 1, 1}));
    EXPECT_EQ(round.pixels, 200 * 100);
    EXPECT_GT(round.pixelsPerUnit, 1e4);
    EXPECT_TRUE(std::isfinite(round.pixelsPerUnit));
}

}  // namespace
