// SPDX-License-Identifier: MIT
#include "export/pov/text/pov_mesh2.h"

#include <gtest/gtest.h>

#include <set>

#include "engine/test_scenes.h"
#include "export/pov/CMesh2Text.h"
#include "export/pov/text/CPovMesh.h"
#include "export/pov/text/CPovText.h"
#include "export/pov/text/pov_parts.h"

namespace {

struct CCase {
    const char* name;
    CPreparedMesh (*make)();
    bool texCoords;
    bool normals;  ///< what is expected
    bool ownNormalIndices;
};

class Mesh2Test : public testing::TestWithParam<CCase> {};

CPovPart OnlyPart(const CPreparedMesh& mesh, bool texCoords, const CPovMesh& numbers) {
    CPovBatch batch;
    batch.mapped = texCoords;
    auto parts = SplitIntoParts(mesh, numbers, std::vector<CPovBatch>(mesh.batches.size(), batch), {}, true);
    EXPECT_EQ(parts.size(), 1u);
    return std::move(parts.front());
}

CMesh2Text Written(const CPovMesh& numbers, const CPovPart& part) {
    CPovText text;
    WritePovMesh2(text, numbers, part);
    return CMesh2Text(text.String());
}

// Whatever the layout is, every corner has its own position, normal and texture coordinate again.
TEST_P(Mesh2Test, CornersComeBack) {
    const CPreparedMesh mesh = GetParam().make();
    const CPovMesh numbers = CPovMesh::Make(mesh, 4, nullptr);
    const CPovPart part = OnlyPart(mesh, GetParam().texCoords, numbers);
    const CMesh2Text read = Written(numbers, part);
    ASSERT_EQ(read.Has("normal_vectors"), GetParam().normals);
    EXPECT_EQ(read.Has("normal_indices"), GetParam().ownNormalIndices);
    ASSERT_EQ(read.Has("uv_vectors"), GetParam().texCoords);
    ASSERT_EQ(read.List("face_indices").size(), part.faces.size());
    for (std::size_t f = 0; f < read.List("face_indices").size(); ++f) {
        for (std::size_t c = 0; c < 3; ++c) {
            const std::uint32_t v = part.faces[f].corner[(3 - c) % 3];
            const CPreparedVertex& vertex = mesh.vertices[v];
            const auto p = read.Corner("vertex_vectors", "face_indices", f, c);
            for (std::size_t i = 0; i < 3; ++i) ASSERT_NEAR(p.at(i), vertex.position[i], 1e-5);
            if (GetParam().normals) {
                const auto n = read.Corner("normal_vectors", "normal_indices", f, c);
                ASSERT_NEAR(n.at(0), vertex.Normal().x, 1e-4);
                ASSERT_NEAR(n.at(2), vertex.Normal().z, 1e-4);
            }
            if (GetParam().texCoords) {
                const auto uv = read.Corner("uv_vectors", "uv_indices", f, c);
                ASSERT_NEAR(uv.at(0), mesh.texCoords[v].x, 1e-5);
                ASSERT_NEAR(uv.at(1), mesh.texCoords[v].y, 1e-5);
            }
        }
    }
    for (const char* list :
         {"vertex_vectors", "normal_vectors", "uv_vectors", "face_indices", "uv_indices"}) {
        if (!read.Has(list)) continue;
        EXPECT_EQ(read.Said(list), read.List(list).size()) << list;
    }
}

/** Smooth, and hard edges beside them: one normal serves many places and the other way round. */
CPreparedMesh CubeAndSphere() {
    CPreparedMesh mesh = test_scenes::MakeCube();
    test_scenes::Append(mesh, test_scenes::MakeSphere(1, 6), 0);
    return mesh;
}

CPreparedMesh Sphere() {
    return test_scenes::MakeSphere(1, 8);
}
CPreparedMesh Cube() {
    return test_scenes::MakeCube();
}

INSTANTIATE_TEST_SUITE_P(pov_mesh2, Mesh2Test,
                         testing::Values(CCase{"Flat", Cube, false, false, false},
                                         CCase{"FlatMapped", Cube, true, false, false},
                                         CCase{"Smooth", Sphere, false, true, false},
                                         CCase{"SmoothMapped", Sphere, true, true, false},
                                         CCase{"Mixed", CubeAndSphere, true, true, false}),
                         [](const auto& row) { return row.param.name; });

TEST(CPovMesh, CoordinatesOfAnySizeAreWrittenWithSomeDigits) {
    for (const float size : {1e-9f, 1.0f, 1e12f}) {
        CPreparedMesh mesh = test_scenes::MakePlane(size);
        const CPovMesh numbers = CPovMesh::Make(mesh, size, nullptr);
        const CMesh2Text read = Written(numbers, OnlyPart(mesh, false, numbers));
        for (const auto& row : read.List("vertex_vectors")) {
            const double expected = static_cast<double>(size) / 2;
            EXPECT_NEAR(std::abs(row.at(0)) / static_cast<double>(numbers.enlarged), expected,
                        expected * 1e-5);
            EXPECT_LT(std::abs(row.at(0)), 1e7);
            EXPECT_GT(std::abs(row.at(0)), 1e-4);
        }
    }
}

TEST(CPovMesh, EqualNormalsThatAreNotThePlanesAreKeptApart) {
    CPreparedMesh mesh = test_scenes::MakePlane(2);
    for (CPreparedVertex& vertex : mesh.vertices) vertex.normal[0] = vertex.normal[2];
    CPovMesh numbers = CPovMesh::Make(mesh, 4, nullptr);
    CPovPart part = OnlyPart(mesh, true, numbers);
    ASSERT_TRUE(part.normals);
    KeepEqualNormals(numbers, part.faces);
    const CMesh2Text read = Written(numbers, part);
    for (std::size_t f = 0; f < part.faces.size(); ++f) {
        std::set<CMesh2Text::CRow> normals, positions;
        for (std::size_t c = 0; c < 3; ++c) {
            normals.insert(read.Corner("normal_vectors", "normal_indices", f, c));
            positions.insert(read.Corner("vertex_vectors", "face_indices", f, c));
        }
        EXPECT_EQ(normals.size(), 2u);
        EXPECT_EQ(positions.size(), 3u);
    }
}

TEST(CPovMesh, TrianglesWithoutAreaAreLeftOut) {
    CPreparedMesh mesh = test_scenes::MakePlane(1);
    mesh.vertices[1] = mesh.vertices[0];
    const CPovMesh numbers = CPovMesh::Make(mesh, 1, nullptr);
    const std::vector<CPovBatch> batches(1);
    const auto parts = SplitIntoParts(mesh, numbers, batches, {}, true);
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_LT(parts.front().faces.size(), 2u);
}

}  // namespace
