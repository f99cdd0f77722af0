// SPDX-License-Identifier: MIT
#include "export/pov/text/pov_parts.h"

#include <gtest/gtest.h>

#include "engine/test_scenes.h"

namespace {

enum class ECube { Closed, Open, Inwards, WithFin };

struct CCase {
    const char* name;
    ECube cube;
    CPovBatch material;
    std::vector<CVec3> eyes;
    std::size_t hidden;  ///< triangles
};

constexpr CPovBatch Batch(bool oneSided, bool seesThrough) {
    CPovBatch batch;
    batch.oneSided = oneSided;
    batch.seesThrough = seesThrough;
    return batch;
}
constexpr CPovBatch kOneSided = Batch(true, false), kTwoSided = Batch(false, false),
                    kGlass = Batch(true, true);
constexpr CVec3 kAbove{0, 0, 9}, kBelow{0, 0, -9}, kWithin{0.1f, 0.2f, 0};

class SplitIntoPartsTest : public testing::TestWithParam<CCase> {};

CPreparedMesh CubeMesh(ECube kind) {
    CPreparedMesh cube = test_scenes::MakeCube();
    if (kind == ECube::Closed) return cube;
    if (kind == ECube::Inwards) {
        for (std::size_t i = 0; i < cube.indices16.size(); i += 3)
            std::swap(cube.indices16[i], cube.indices16[i + 1]);
        return cube;
    }
    if (kind == ECube::WithFin) {
        // A triangle across the cube's top, and its back.
        const auto first = static_cast<std::uint16_t>(cube.vertices.size());
        for (const CVec3 p : {CVec3{-1, -1, 1}, CVec3{1, -1, 1}, CVec3{0, 0, 3}}) {
            CPreparedVertex vertex = cube.vertices.front();
            vertex.position[0] = p.x;
            vertex.position[1] = p.y;
            vertex.position[2] = p.z;
            cube.vertices.push_back(vertex);
            cube.texCoords.push_back({});
        }
        for (const int i : {0, 1, 2, 0, 2, 1})
            cube.indices16.push_back(static_cast<std::uint16_t>(first + i));
        cube.batches.front().indexCount += 6;
        return cube;
    }
    std::vector<std::uint16_t> kept;
    for (std::uint32_t i = 0; i < cube.IndexCount(); i += 3) {
        const bool top = cube.vertices[cube.Index(i)].Normal().z > 0.5f;
        for (std::uint32_t c = 0; c < 3 && !top; ++c)
            kept.push_back(static_cast<std::uint16_t>(cube.Index(i + c)));
    }
    cube.indices16 = kept;
    cube.batches.front().indexCount = static_cast<std::uint32_t>(kept.size());
    return cube;
}

TEST_P(SplitIntoPartsTest, HidesWhatTheViewDoesNotShow) {
    const CPreparedMesh mesh = CubeMesh(GetParam().cube);
    const CPovMesh numbers = CPovMesh::Make(mesh, 4, nullptr);
    const std::vector<CPovBatch> batches(mesh.batches.size(), GetParam().material);
    std::size_t hidden = 0, all = 0;
    for (const CPovPart& part : SplitIntoParts(mesh, numbers, batches, GetParam().eyes, true)) {
        const std::uint32_t everybody = (1u << GetParam().eyes.size()) - 1;
        hidden += part.hiddenFrom != 0 && part.hiddenFrom == everybody ? part.faces.size() : 0;
        all += part.faces.size();
    }
    EXPECT_EQ(hidden, GetParam().hidden);
    EXPECT_EQ(all, mesh.IndexCount() / 3);
}

INSTANTIATE_TEST_SUITE_P(
    pov_parts, SplitIntoPartsTest,
    testing::Values(CCase{"ClosedHidesNothing", ECube::Closed, kOneSided, {kAbove}, 0},
                    CCase{"ClosedFromWithinHidesAll", ECube::Closed, kOneSided, {kWithin}, 12},
                    CCase{"RoomIsLookedInto", ECube::Inwards, kOneSided, {kAbove}, 2},
                    // Nine units before it one sees the front of the cube and one side of the fin.
                    CCase{"FinHidesBacks", ECube::WithFin, kOneSided, {{0, -9, 0}}, 11},
                    // From nine units away the sides of a cube with a side of two turn their backs.
                    CCase{"ClosedGlassHidesBacks", ECube::Closed, kGlass, {kAbove}, 10},
                    CCase{"OpenHidesBacks", ECube::Open, kOneSided, {kAbove}, 10},
                    CCase{"OpenFromBelowHidesSides", ECube::Open, kOneSided, {kBelow}, 8},
                    CCase{"BothSidesHideNothing", ECube::Open, kTwoSided, {kAbove}, 0},
                    CCase{"SeenByAnyInstanceIsNotHidden", ECube::Open, kOneSided, {kAbove, kBelow}, 8},
                    CCase{"WithoutEyesNothing", ECube::Open, kOneSided, {}, 0}),
    [](const auto& row) { return row.param.name; });

}  // namespace
