// SPDX-License-Identifier: MIT
#include "export/pov/text/pov_parts.h"

#include <gtest/gtest.h>

#include "engine/test_scenes.h"
#include "row_name.h"

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

class PovPartsTest : public testing::TestWithParam<CCase> {};

CPreparedMesh CubeMesh(ECube kind) {
    CPreparedMesh cube = test_scenes::MakeCube();
    std::vector<std::uint16_t>& indices = cube.indices16;
    if (kind == ECube::Inwards) {
        for (std::size_t i = 0; i < indices.size(); i += 3) std::swap(indices[i], indices[i + 1]);
    } else if (kind == ECube::WithFin) {
        // A triangle across the cube's top, and its back.
        const auto first = static_cast<std::uint16_t>(cube.vertices.size());
        for (const CVec3 p : {CVec3{-1, -1, 1}, CVec3{1, -1, 1}, CVec3{0, 0, 3}})
            cube.vertices.push_back({{p.x, p.y, p.z}, {}});
        cube.texCoords.resize(cube.vertices.size());
        for (const int i : {0, 1, 2, 0, 2, 1}) indices.push_back(static_cast<std::uint16_t>(first + i));
    } else if (kind == ECube::Open) {
        indices.erase(indices.begin() + 24, indices.begin() + 30);  // its top
    }
    cube.batches.front().indexCount = cube.IndexCount();
    return cube;
}

TEST_P(PovPartsTest, HidesWhatTheViewDoesNotShow) {
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

const CCase kCases[] = {
    {"ClosedHidesNothing", ECube::Closed, kOneSided, {kAbove}, 0},
    {"ClosedFromWithinHidesAll", ECube::Closed, kOneSided, {kWithin}, 12},
    {"RoomIsLookedInto", ECube::Inwards, kOneSided, {kAbove}, 2},
    // Nine units before it one sees the front of the cube and one side of the fin.
    {"FinHidesBacks", ECube::WithFin, kOneSided, {{0, -9, 0}}, 11},
    // From nine units away the sides of a cube with a side of two turn their backs.
    {"ClosedGlassHidesBacks", ECube::Closed, kGlass, {kAbove}, 10},
    {"OpenHidesBacks", ECube::Open, kOneSided, {kAbove}, 10},
    {"OpenFromBelowHidesSides", ECube::Open, kOneSided, {kBelow}, 8},
    {"BothSidesHideNothing", ECube::Open, kTwoSided, {kAbove}, 0},
    {"SeenByAnyInstanceIsNotHidden", ECube::Open, kOneSided, {kAbove, kBelow}, 8},
    {"WithoutEyesNothing", ECube::Open, kOneSided, {}, 0},
};
INSTANTIATE_TEST_SUITE_P(Cubes, PovPartsTest, testing::ValuesIn(kCases), kRowName);

}  // namespace
