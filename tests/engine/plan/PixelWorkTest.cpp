// SPDX-License-Identifier: MIT
// The estimate of what the pixels of a picture take.
#include "engine/plan/CPixelWork.h"

#include <gtest/gtest.h>

#include <limits>

#include "engine/plan/CMeshSample.h"
#include "engine/plan/CMovingReduction.h"
#include "engine/plan/CPixelMeter.h"
#include "model/prepare/CPreparedScene.h"
#include "row_name.h"

namespace {

using EFaces = CPixelMeter::EFaces;

// --- one triangle ------------------------------------------------------------------------------------------

/** Seen along -z with the eye in the origin, 90 degrees wide and high, from z = -1 to -1000, in 200 x 100 pixels. */
struct CTriangleRow {
    const char* name;
    std::array<CVec3, 3> corners;
    EFaces faces;
    double area;
};

class PixelMeterTest : public testing::TestWithParam<CTriangleRow> {};

TEST_P(PixelMeterTest, Area) {
    CMatrix4d clip;
    clip.m = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1.002, -1, 0, 0, -2.002, 0};
    const CPixelMeter meter(200, 100);
    const double area = meter.Of({GetParam().corners, 3}, clip, GetParam().faces).area;
    EXPECT_NEAR(area, 3 * GetParam().area, 0.5);
}

constexpr float kHuge = 1e9f, kNan = std::numeric_limits<float>::quiet_NaN();
constexpr std::array<CVec3, 3> kHalf{{{-2, -2, -2}, {2, -2, -2}, {-2, 2, -2}}};
const CTriangleRow kTriangles[] = {
    {"HalfOfTheView", kHalf, EFaces::Both, 10'000},
    {"SeenFromTheFront", kHalf, EFaces::CounterClockwise, 10'000},
    {"SeenFromBehind", kHalf, EFaces::Clockwise, 0},
    {"OnlyWhatLiesInTheView", {{{-2, -2, -2}, {6, -2, -2}, {-2, 6, -2}}}, EFaces::Both, 20'000},
    {"BesideTheView", {{{3, 0, -2}, {4, 0, -2}, {3, 1, -2}}}, EFaces::Both, 0},
    {"BehindTheEye", {{{-2, -2, 2}, {2, -2, 2}, {-2, 2, 2}}}, EFaces::Both, 0},
    {"ReachesBehindTheEye", {{{-900, -1, -900}, {900, -1, -900}, {0, -1, 900}}}, EFaces::Both, 9'989},
    {"AMillionTimesTheView",
     {{{-kHuge, -kHuge, -2}, {kHuge, -kHuge, -2}, {0, kHuge, -2}}},
     EFaces::Both,
     20'000},
    {"NotANumber", {{{-2, kNan, -2}, {2, -2, -2}, {-2, 2, -2}}}, EFaces::Both, 0},
};
INSTANTIATE_TEST_SUITE_P(Triangles, PixelMeterTest, testing::ValuesIn(kTriangles), kRowName);

// --- all of a mesh -----------------------------------------------------------------------------------------

/** Right-angled triangles with these legs, in one batch. */
CPreparedMesh MeshOf(const std::vector<float>& legs) {
    CPreparedMesh mesh;
    for (const float leg : legs) {
        for (const CVec3 p : {CVec3{0, 0, 0}, CVec3{leg, 0, 0}, CVec3{0, leg, 0}}) {
            mesh.indices32.push_back(static_cast<std::uint32_t>(mesh.vertices.size()));
            mesh.vertices.push_back({{p.x, p.y, p.z}, {0, 0, 32767, 0}});
        }
    }
    mesh.batches = {{0, 0, mesh.IndexCount()}};
    return mesh;
}

/** The sum of the sample's triangles that have legs up to this, times their weights. */
double Sampled(const CPreparedMesh& mesh, float longest) {
    double sum = 0;
    const CMeshSample sample(mesh, 64);
    for (const CSampleTriangle& triangle : sample.OfBatch(0)) {
        const float leg = triangle.corners[1].x;
        if (leg <= longest) sum += static_cast<double>(leg * leg / 2 * triangle.weight);
    }
    return sum;
}

TEST(MeshSampleTest, StandsForAllTriangles) {
    EXPECT_DOUBLE_EQ(Sampled(MeshOf({1, 2, 3}), 9), 7);
    std::vector<float> legs(5'000, 1);
    EXPECT_NEAR(Sampled(MeshOf(legs), 9), 2'500, 50);
    for (std::size_t i = 0; i < legs.size(); i += 50) legs[i + 7] = 100;  // where no even step finds them
    EXPECT_NEAR(Sampled(MeshOf(legs), 200), 502'450, 50'000);
    EXPECT_EQ(CMeshSample(MeshOf(legs), 64).OfBatch(1).size(), 0u);
}

TEST(MeshSampleTest, AHugeTriangleHidesNoOthers) {
    for (const float huge : {1e6f, 1e30f}) {
        std::vector<float> legs(5'000, 1);
        legs[2'000] = huge;
        EXPECT_NEAR(Sampled(MeshOf(legs), 9), 2'500, 250);
    }
}

// --- what becomes of a picture -----------------------------------------------------------------------------

struct CReductionRow {
    const char* name;
    double layers;  ///< each as large as the picture
    CPixelUse use;
    double pixels;
    int samples, reduction;
};

class PixelWorkTest : public testing::TestWithParam<CReductionRow> {};

TEST_P(PixelWorkTest, Reduction) {
    const CReductionRow& row = GetParam();
    CPixelWork work;
    work.Add(row.layers * row.pixels, row.use);
    EXPECT_EQ(work.ReductionFor(row.pixels, row.samples), row.reduction);
}

constexpr double kUsual = CPixelWork::kUsualPixels;
constexpr CPixelUse kPlain{0, 1, false}, kGlass{0, 1, true}, kSixMaps{6, 2, true};
const CReductionRow kReductions[] = {
    {"Nothing", 0, kPlain, kUsual, 4, 0},
    {"FortyLayers", 40, kPlain, kUsual, 4, 0},
    {"EightLayersOfSixMaps", 4, kSixMaps, kUsual, 4, 0},
    {"EightyLayersLoseTheirSamples", 80, kPlain, kUsual, 4, 1},
    {"EightyLayersWithoutSamples", 80, kPlain, kUsual, 0, 0},
    {"TheSameInALargePicture", 80, kPlain, 64 * kUsual, 0, 0},
    {"InASmallPictureMoreFits", 1'000, kPlain, kUsual / 16, 0, 0},
    {"HalfTheSides", 300, kPlain, kUsual, 4, 2},
    {"HalfTheSidesWithoutSamples", 110, kGlass, kUsual, 0, 2},
    {"AnEighthOfTheSides", 300, kSixMaps, kUsual, 4, 8},
    {"NeverLessThanASixtyFourth", 1e12, kPlain, kUsual, 4, 64},
};
INSTANTIATE_TEST_SUITE_P(Pictures, PixelWorkTest, testing::ValuesIn(kReductions), kRowName);

// --- moving frames ------------------------------------------------------------------------------------------

TEST(MovingReductionTest, GrowsWhileFramesEndTooSoonAndShrinksWhereThereIsTime) {
    CMovingReduction reduction;
    const auto learn = [&reduction](int frames, bool ended, double ms) {
        for (int frame = 0; frame < frames; ++frame) reduction.Learn(ended, ms);
        return reduction.Divisor();
    };
    EXPECT_EQ(learn(1, true, 60), 2);
    EXPECT_EQ(learn(50, false, 20), 2) << "four times as long would be too long";
    EXPECT_EQ(learn(9, true, 60), CMovingReduction::kMost);
    EXPECT_EQ(learn(8, false, 5), 2);
    EXPECT_EQ(learn(50, false, 5), 1);
}

}  // namespace
