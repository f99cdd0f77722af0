// SPDX-License-Identifier: MIT
#include "frame/materials/shared_material.h"

#include <gtest/gtest.h>

#include "model/prepare/CPreparedScene.h"
#include "row_name.h"

namespace {

/** Materials: 0 red, 1 blue, 2 none. */
CPreparedScene Scene() {
    CPreparedScene scene;
    scene.materials.resize(3);
    scene.materials[0].name = "red";
    scene.materials[1].name = "blue";
    const auto add = [&](const char* name, std::vector<std::uint32_t> materials) {
        CPreparedNode node;
        node.name = name;
        if (!materials.empty()) {
            node.mesh = static_cast<int>(scene.meshes.size());
            CPreparedMesh& mesh = scene.meshes.emplace_back();
            for (const std::uint32_t material : materials) mesh.batches.push_back({material, 0, 3});
        }
        scene.nodes.push_back(node);
    };
    add("Red", {0});
    add("Both", {0, 1});
    add("Blue", {1});
    add("Dummy", {});
    add("Bare", {2});
    add("BareToo", {2});
    // A camera is no part, whatever its number of a mesh.
    add("Camera", {0});
    scene.nodes.back().kind = ENodeKind::Camera;
    return scene;
}

struct CAsked {
    const char* name;
    std::vector<std::string> nodes;
    std::vector<std::string> materials;
};
const CAsked kAsked[] = {
    {"Red", {"Red", "Both"}, {"red"}},
    {"Both", {"Red", "Both", "Blue"}, {"red", "blue"}},
    {"Bare", {"Bare", "BareToo"}, {""}},
    {"Dummy", {}, {}},
    {"Camera", {}, {}},
    {"Nobody", {}, {}},
};
class SharedMaterialTest : public testing::TestWithParam<CAsked> {};

TEST_P(SharedMaterialTest, FindsWhoDrawsIt) {
    const CMaterialShare share = ShareOf(Scene(), GetParam().name);
    EXPECT_EQ(share.nodes, GetParam().nodes);
    EXPECT_EQ(share.materials, GetParam().materials);
}
INSTANTIATE_TEST_SUITE_P(All, SharedMaterialTest, testing::ValuesIn(kAsked), kRowName);

}  // namespace
