// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <vector>

#include "engine/CPictureTest.h"
#include "row_name.h"

using namespace test_scenes;

namespace {

// --- what a material's colour is, on a square that faces the eye: N, L and V are one direction there ---

constexpr CVec3 kOwn{0.5f, 0.25f, 0.1f};

struct CColorCase {
    const char* name;
    CColor expected;
    CPreparedMaterial material = Plain(kOwn);
    std::vector<CPreparedLight> lights{};
    CVec3 ambientLight{};
    CDrawOptions options{};
};

std::vector<CPreparedLight> SevenLightsAnd(std::initializer_list<float> others) {
    std::vector<CPreparedLight> lights(7, LightAt({0, 0, 9}, 0.1f));
    for (const float multiplier : others) lights.push_back(LightAt({0, 0, 9}, multiplier));
    return lights;
}

const CColorCase kColors[] = {
    {"HighlightIsNotSeenThroughGlass",
     {102, 102, 102},
     {.diffuse = {},
      .specular = {1, 1, 1},
      .shininessStrength = 1,
      .transparency = 0.75f,
      .needsBlending = true}},
    {"InvisibleShowsNoHighlight",
     {51, 51, 51},
     {.diffuse = kOwn, .shininessStrength = 1, .transparency = 1, .needsBlending = true}},
    {"SelfIlluminationAdds", {191, 96, 38}, {.diffuse = kOwn, .selfIllumination = 0.5f}},
    {"LightFromBehindGivesNoHighlight",
     {0, 0, 0},
     {.diffuse = kOwn, .shininess = 0, .shininessStrength = 1},
     {LightAt({0, 9, -0.1f})}},
    {"LightThatIsOff",
     {64, 32, 13},
     Plain(kOwn),
     {LightAt({0, 0, 9}, 0.5f), {.off = true, .position = {0, 0, 8}}}},
    {"HeadlightWhenAllAreOff",
     {128, 64, 26},
     Plain(kOwn),
     {{.off = true, .position = {0, 0, 9}, .multiplier = 0.5f}}},
    {.name = "HeadlightWhenAskedFor",
     .expected = {128, 64, 26},
     .lights = {LightAt({0, 0, 9}, 0.5f)},
     .options = {.useFileLights = false}},
    {"TheStrongestEightOfTen", {140, 70, 28}, Plain(kOwn), SevenLightsAnd({0.1f, 0.2f, 0.3f})},
};

class MaterialColorGLTest : public CPictureTest, public testing::WithParamInterface<CColorCase> {};

TEST_P(MaterialColorGLTest, IsTheSumOfItsParts) {
    m_builder.Scene().lights = GetParam().lights;
    m_builder.Scene().ambientLight = GetParam().ambientLight;
    m_builder.Add(MakePlane(), GetParam().material);
    EXPECT_TRUE(HasColor(Draw(GetParam().options), 160, 120, GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Rules, MaterialColorGLTest, testing::ValuesIn(kColors), kRowName);

// --- where a map's parts lie: the square fills the picture, sampled a quarter in from its corners ---

constexpr CColor kRed{255, 0, 0}, kGreen{0, 255, 0}, kBlue{0, 0, 255}, kWhite{255, 255, 255},
    kGrey{128, 128, 128};

struct CMapCase {
    const char* name;
    CPreparedMap map;
    CColor topLeft = kGrey, topRight = kGrey, bottomLeft = kGrey, bottomRight = kGrey;
};

const CMapCase kMaps[] = {
    {"Upright", {}, kRed, kGreen, kBlue, kWhite},
    {"MovedByHalf", {.offset = {0.5f, 0}}, kGreen, kRed, kWhite, kBlue},
    {"MovedUpwardsMovesThePicture", {.offset = {0, 0.5f}, .tile = false}, kBlue, kWhite},
    {"TurnedByAQuarter", {.rotationDeg = 90}, kGreen, kWhite, kRed, kBlue},
    {"TiledTwice", {.scale = {2, 1}, .offset = {0.125f, 0}}, kGreen, kGreen, kWhite, kWhite},
    {"Mirrored", {.offset = {0.5f, 0}, .mirror = true}, kRed, kRed, kBlue, kBlue},
    {"OnceShowsTheColourBesideIt", {.scale = {4, 4}, .tile = false}},
    {"Negative", {.negative = true}, {0, 255, 255}, {255, 0, 255}, {255, 255, 0}, {0, 0, 0}},
    {"HalfItsAmount", {.amount = 0.5f}, {191, 64, 64}, {64, 191, 64}, {64, 64, 191}, {191, 191, 191}},
    {"NoAmount", {.amount = 0}},
};

class MapPlacementGLTest : public CPictureTest, public testing::WithParamInterface<CMapCase> {};

TEST_P(MapPlacementGLTest, ShowsEachPartWhereItBelongs) {
    const CMapCase& c = GetParam();
    CPreparedMaterial material = Plain({0.5f, 0.5f, 0.5f});
    material.texture = c.map;
    material.texture.texture = m_builder.AddTexture(QuarterImage()).texture;
    m_builder.Add(MakePlane(2), material);
    LookFrom({0, 0, 60});  // from far away all of the square is lit straight on
    m_projection.m[0] *= 24;
    m_projection.m[5] *= 24;
    const CImage image = Draw();
    EXPECT_TRUE(HasColor(image, 100, 60, c.topLeft, 2));
    EXPECT_TRUE(HasColor(image, 220, 60, c.topRight, 2));
    EXPECT_TRUE(HasColor(image, 100, 180, c.bottomLeft, 2));
    EXPECT_TRUE(HasColor(image, 220, 180, c.bottomRight, 2));
}

INSTANTIATE_TEST_SUITE_P(Maps, MapPlacementGLTest, testing::ValuesIn(kMaps), kRowName);

}  // namespace
