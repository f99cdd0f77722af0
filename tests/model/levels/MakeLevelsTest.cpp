// SPDX-License-Identifier: MIT
#include "model/levels/make_levels.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>

#include "row_name.h"
#include "wavy_mesh.h"

namespace {

struct CRow {
    const char* name;
    CWavy like;
};

std::size_t BytesOf(const CPreparedMesh& mesh) {
    return mesh.vertices.size() * 20 + mesh.texCoords.size() * 8 + mesh.indices16.size() * 2 +
           mesh.indices32.size() * 4;
}

/** A level as a mesh: the triangles' corners by their places. */
struct COpened {
    const std::vector<CPreparedVertex>& vertices;
    std::vector<std::uint32_t> indices;

    COpened(const CPreparedMesh& mesh, const CMeshLevel& level)
        : vertices(level.HasOwnVertices() ? level.vertices : mesh.vertices) {
        indices.assign(level.indices16.begin(), level.indices16.end());
        indices.insert(indices.end(), level.indices32.begin(), level.indices32.end());
    }
    [[nodiscard]] CVec3 At(std::size_t i) const { return vertices[indices[i]].Position(); }
};

using CPlace = std::array<float, 2>;

/** Edges, by places in the plane, that only one triangle of the run has: its border. */
double BorderLength(const COpened& mesh, std::size_t from, std::size_t to) {
    std::map<std::pair<CPlace, CPlace>, int> uses;
    for (std::size_t i = from; i < to; ++i) {
        const CVec3 a = mesh.At(i), b = mesh.At(i % 3 == 2 ? i - 2 : i + 1);
        const CPlace first{a.x, a.y}, second{b.x, b.y};
        ++uses[std::minmax(first, second)];
    }
    double sum = 0;
    for (const auto& [edge, count] : uses) {
        if (count == 1)
            sum += static_cast<double>(
                std::hypot(edge.first[0] - edge.second[0], edge.first[1] - edge.second[1]));
    }
    return sum;
}

class MakeLevelsTest : public testing::TestWithParam<CRow> {
  protected:
    std::atomic<bool> m_stop{false};
};

INSTANTIATE_TEST_SUITE_P(Meshes, MakeLevelsTest,
                         testing::Values(CRow{"Smooth", {}}, CRow{"TwoMaterials", {60, false, true}},
                                         CRow{"Faceted", {60, true}},
                                         CRow{"FacetedWithTexture", {60, true, true, true}},
                                         CRow{"WideIndices", {260, false, true, true}}),
                         kRowName);

TEST_P(MakeLevelsTest, EachIsCoarserThanTheOneBeforeAndAllTakeAThirdOfTheMemoryAtMost) {
    const CPreparedMesh mesh = WavyMesh(GetParam().like);
    const CMeshLevels made = MakeLevels(mesh, m_stop);
    ASSERT_GE(made.levels.size(), 3u);
    EXPECT_LE(made.levels.front().IndexCount(), mesh.IndexCount() * 2 / 5);
    std::size_t before = mesh.IndexCount(), bytes = 0;
    float error = 0;
    for (const CMeshLevel& level : made.levels) {
        EXPECT_LE(level.IndexCount() * 5, before * 4);
        EXPECT_GE(level.error, error);
        EXPECT_LT(level.error, 0.2f);
        error = level.error;
        before = level.IndexCount();
        bytes += level.Bytes();
    }
    EXPECT_LE(bytes * 3, BytesOf(mesh));
}

TEST_P(MakeLevelsTest, TheSquareStaysWholeAndEachMaterialKeepsItsPart) {
    const CPreparedMesh mesh = WavyMesh(GetParam().like);
    const CMeshLevels made = MakeLevels(mesh, m_stop);
    for (const CMeshLevel& level : made.levels) {
        const COpened opened(mesh, level);
        ASSERT_EQ(level.batches.size(), mesh.batches.size());
        // Closed inside, and not cut off at the rim.
        EXPECT_NEAR(BorderLength(opened, 0, opened.indices.size()), 4, 0.2);
        for (std::size_t b = 0; b < level.batches.size(); ++b) {
            const CPreparedBatch& batch = level.batches[b];
            EXPECT_EQ(batch.material, mesh.batches[b].material);
            double middle = 0;
            for (std::uint32_t i = batch.firstIndex; i < batch.firstIndex + batch.indexCount; ++i) {
                ASSERT_LT(opened.indices[i], opened.vertices.size());
                middle += static_cast<double>(opened.At(i).x) / batch.indexCount;
            }
            const double expected = mesh.batches.size() == 1 ? 0.5 : b == 0 ? 0.25 : 0.75;
            EXPECT_NEAR(middle, expected, 0.1);
        }
    }
}

TEST_P(MakeLevelsTest, NothingIsLeftOfAMeshWhoseMakingIsStopped) {
    m_stop = true;
    EXPECT_TRUE(MakeLevels(WavyMesh(GetParam().like), m_stop).levels.empty());
}

constexpr auto kMakeLevels = [](const CPreparedMesh& mesh) {
    const std::atomic<bool> go{false};
    return MakeLevels(mesh, go);
};

TEST(MakeLevelsOfOddMeshesTest, MeshesWithoutUsablePlacesGetNone) {
    for (const float bad :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), 3e38f}) {
        CPreparedMesh mesh = WavyMesh({});
        mesh.vertices[7].position[1] = bad;
        mesh.vertices[9].position[1] = -bad;
        EXPECT_TRUE(kMakeLevels(mesh).levels.empty()) << bad;
    }
    CPreparedMesh point = WavyMesh({});
    for (CPreparedVertex& vertex : point.vertices) vertex = point.vertices.front();
    EXPECT_TRUE(kMakeLevels(point).levels.empty());
    EXPECT_TRUE(kMakeLevels({}).levels.empty());
}

TEST(MakeLevelsOfOddMeshesTest, TrianglesThatAllShareOnePlaceDoNoHarm) {
    CPreparedMesh mesh = WavyMesh({});
    for (std::size_t v = 3; v < mesh.vertices.size(); ++v) mesh.vertices[v] = mesh.vertices[v % 3];
    for (const CMeshLevel& level : kMakeLevels(mesh).levels) EXPECT_TRUE(std::isfinite(level.error));
}

TEST(MakeLevelsOfOddMeshesTest, AFewLargeTrianglesShowInTheGrain) {
    CPreparedMesh mesh = WavyMesh({40});
    const float even = kMakeLevels(mesh).grains.at(0);
    EXPECT_NEAR(even, std::sqrt(2.0f) / 40, 0.01f);
    const auto first = static_cast<std::uint16_t>(mesh.vertices.size());
    for (const auto& [x, y] : {std::pair{0.0f, 0.0f}, {1.0f, 0.0f}, {1.0f, 1.0f}})
        mesh.vertices.push_back({{x, y, -1}, {0, 0, 32767, 0}});
    for (std::uint16_t i = 0; i < 3; ++i) mesh.indices16.push_back(static_cast<std::uint16_t>(first + i));
    mesh.batches[0].indexCount += 3;
    EXPECT_GT(kMakeLevels(mesh).grains.at(0), 0.5f);
}

}  // namespace
