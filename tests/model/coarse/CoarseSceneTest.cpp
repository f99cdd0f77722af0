// SPDX-License-Identifier: MIT
#include "model/coarse/coarse_scene.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

#include "camera/framing.h"
#include "files/CTestFolder.h"
#include "model/open/load_scene.h"
#include "scene_builder/large_scene.h"

namespace {

/** A scene that was loaded, and the stand-in that came before it. */
class CoarseSceneTest : public testing::Test {
  protected:
    [[nodiscard]] std::optional<CPreparedScene> Load(long triangles) {
        std::optional<CPreparedScene> coarse;
        MakeLargeScene(triangles, folder / "large.3ds");
        auto loaded = LoadScene(folder / "large.3ds", nullptr, {}, [&](CCoarseScene s) {
            coarse = std::move(s.scene);
            kinds = std::move(s.kinds);
        });
        EXPECT_TRUE(loaded);
        if (loaded) whole = std::move(loaded.Value().prepared);
        return coarse;
    }

    const CTestFolder folder;
    CPreparedScene whole, kinds;
};

TEST_F(CoarseSceneTest, ComesForLargeScenesAlone) {
    EXPECT_FALSE(Load(static_cast<long>(kCoarseFromFaces) / 2));
    EXPECT_TRUE(Load(static_cast<long>(kCoarseFromFaces) * 11 / 10));
}

TEST_F(CoarseSceneTest, IsSmallAndFramedAsTheSceneIs) {
    const auto coarse = Load(600'000);
    ASSERT_TRUE(coarse);
    EXPECT_LT(coarse->triangleCount, whole.triangleCount / 10);
    EXPECT_GT(coarse->triangleCount, whole.triangleCount / 100);
    const CSphere framed = FramingSphere(*coarse), expected = FramingSphere(whole);
    EXPECT_LT(Length(framed.center - expected.center), expected.radius * 1e-3f);
    EXPECT_NEAR(framed.radius, expected.radius, expected.radius * 1e-3f);
    ASSERT_EQ(coarse->nodes.size(), whole.nodes.size());
    for (std::size_t i = 0; i < whole.nodes.size(); ++i)
        EXPECT_EQ(coarse->nodes[i].meshToWorld, whole.nodes[i].meshToWorld);
}

/** Where a mesh is not closed: edges that one triangle alone has. */
std::size_t OpenEdges(const CPreparedMesh& mesh) {
    std::map<std::pair<std::uint32_t, std::uint32_t>, int> sides;
    for (std::uint32_t i = 0; i < mesh.IndexCount(); i += 3) {
        for (std::uint32_t k = 0; k < 3; ++k) {
            const std::uint32_t from = mesh.Index(i + k), to = mesh.Index(i + (k + 1) % 3);
            sides[std::minmax(from, to)] += from < to ? 1 : -1;
        }
    }
    std::size_t open = 0;
    for (const auto& [edge, balance] : sides) open += balance != 0;
    return open;
}

// The tori are closed, across the borders of their twenty materials too, and nothing of the scene is referred to.
TEST_F(CoarseSceneTest, HasNoGapsAndStandsAlone) {
    auto coarse = Load(600'000);
    ASSERT_TRUE(coarse);
    coarse->meshes.pop_back();  // what is left over of the number of triangles is no whole torus
    for (const CPreparedMesh& mesh : coarse->meshes) {
        EXPECT_EQ(OpenEdges(mesh), 0u) << mesh.name;
        std::uint32_t indices = 0;
        for (const CPreparedBatch& batch : mesh.batches) indices += batch.indexCount;
        EXPECT_EQ(indices, mesh.IndexCount());
    }
    for (const CPreparedNode& node : coarse->nodes) EXPECT_EQ(node.source, nullptr);
    for (const CPreparedMaterial& material : coarse->materials) {
        EXPECT_FALSE(material.texture.HasEffect()) << material.name;
        EXPECT_FALSE(material.needsBlending) << material.name;
    }
}

/** What a renderer tells programs apart by, as far as these scenes differ in it. */
using CKind = std::tuple<bool, bool, bool, bool, bool, std::size_t>;

std::set<CKind> KindsIn(const CPreparedScene& scene) {
    std::set<CKind> kinds;
    for (const CPreparedMesh& mesh : scene.meshes) {
        for (const CPreparedBatch& batch : mesh.batches) {
            const CPreparedMaterial& m = scene.materials[batch.material];
            kinds.insert({!mesh.texCoords.empty(), m.texture.HasEffect(), m.twoSided, m.needsBlending,
                          m.shininessStrength > 0, scene.lights.size()});
        }
    }
    return kinds;
}

TEST_F(CoarseSceneTest, TellsTheKindsOfSurfacesThatAreToCome) {
    const auto coarse = Load(600'000);
    ASSERT_TRUE(coarse);
    EXPECT_EQ(KindsIn(kinds), KindsIn(whole));
    for (const CPreparedNode& node : kinds.nodes)
        EXPECT_LT(static_cast<std::size_t>(node.mesh), kinds.meshes.size());
    EXPECT_EQ(KindsIn(CoarseKind()).size(), 1u);
}

}  // namespace
