// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>

#include "engine/CPictureTest.h"

using namespace test_scenes;

namespace {

constexpr int kMiddleX = 160, kMiddleY = 120;

// --- what a material's colour is, on a square that faces the eye: N, L and V are one direction there ---

struct CColorCase {
    std::string name;
    std::function<void(CPreparedMaterial&, CPreparedScene&)> change;
    CColor expected;
    CDrawOptions options{};

    friend void PrintTo(const CColorCase& c, std::ostream* out) { *out << c.name; }
};

const CColorCase kColors[] = {
    {"DiffuseUnderHeadlight", [](auto&, auto&) {}, {128, 64, 26}},
    {"HighlightIsAdded",
     [](auto& m, auto&) {
         m.shininessStrength = 0.5f;
         m.specular = {0, 1, 0};
     },
     {128, 191, 26}},
    {"HighlightIsNotSeenThroughGlass",
     [](auto& m, auto&) {
         m.shininessStrength = 1;
         m.transparency = 0.75f;
         m.needsBlending = true;
         m.diffuse = {};
         m.specular = {1, 1, 1};
     },
     {102, 102, 102}},
    {"InvisibleShowsNoHighlight",
     [](auto& m, auto&) {
         m.shininessStrength = 1;
         m.transparency = 1;
         m.needsBlending = true;
     },
     {51, 51, 51}},
    {"MetalTintsItsHighlight",
     [](auto& m, auto&) {
         m.shading = EShading::Metal;
         m.shininessStrength = 1;
         m.specular = {1, 1, 0};
     },
     {255, 128, 26}},
    {"SelfIlluminationAdds", [](auto& m, auto&) { m.selfIllumination = 0.5f; }, {191, 96, 38}},
    {"AmbientLightOfTheFile",
     [](auto& m, auto& s) {
         m.ambient = {0, 1, 1};
         s.ambientLight = {0.5f, 0.25f, 0.5f};
     },
     {128, 128, 153}},
    {"HalfTransparent",
     [](auto& m, auto&) {
         m.transparency = 0.5f;
         m.needsBlending = true;
     },
     {89, 57, 38}},
    {"Additive", [](auto& m, auto&) { m.additive = true; }, {179, 115, 77}},
    {"LightOfTheFile",
     [](auto&, auto& s) {
         s.lights = {LightAt({0, 0, 9}, 0.5f)};
     },
     {64, 32, 13}},
    {"LightFromTheSide",
     [](auto&, auto& s) {
         s.lights = {LightAt({0, 3, 3})};
     },
     {90, 45, 18}},
    {"LightFromBehind",
     [](auto&, auto& s) {
         s.lights = {LightAt({0, 0, -9})};
     },
     {0, 0, 0}},
    {"LightFromBehindGivesNoHighlight",
     [](auto& m, auto& s) {
         s.lights = {LightAt({0, 9, -0.1f})};
         m.shininessStrength = 1;
         m.shininess = 0;
     },
     {0, 0, 0}},
    {"LightsAdd",
     [](auto&, auto& s) {
         s.lights = {LightAt({0, 0, 9}, 0.5f), LightAt({0, 0, 8}, 0.25f)};
     },
     {96, 48, 19}},
    {"LightThatIsOff",
     [](auto&, auto& s) {
         s.lights = {LightAt({0, 0, 9}, 0.5f), LightAt({0, 0, 8})};
         s.lights[1].off = true;
     },
     {64, 32, 13}},
    {"HeadlightWhenAllAreOff",
     [](auto&, auto& s) {
         s.lights = {LightAt({0, 0, 9}, 0.5f)};
         s.lights[0].off = true;
     },
     {128, 64, 26}},
    {"HeadlightWhenAskedFor",
     [](auto&, auto& s) {
         s.lights = {LightAt({0, 0, 9}, 0.5f)};
     },
     {128, 64, 26},
     {false}},
    {"TheStrongestEightOfTen",
     [](auto&, auto& s) {
         for (int i = 0; i < 8; ++i) s.lights.push_back(LightAt({0, 0, 9}, 0.1f));
         s.lights.push_back(LightAt({0, 0, 9}, 0.2f));
         s.lights.push_back(LightAt({0, 0, 9}, 0.3f));
     },
     {140, 70, 28}},
    {"SpotInsideItsHotspot",
     [](auto&, auto& s) {
         s.lights = {LightAt({0, 0, 9})};
         s.lights[0].spot = true;
         s.lights[0].target = {1, 0, 0};
         s.lights[0].hotspotDeg = 20;
         s.lights[0].falloffDeg = 30;
     },
     {128, 64, 26}},
    {"SpotBeyondItsFalloff",
     [](auto&, auto& s) {
         s.lights = {LightAt({0, 0, 9})};
         s.lights[0].spot = true;
         s.lights[0].target = {4, 0, 0};
         s.lights[0].hotspotDeg = 20;
         s.lights[0].falloffDeg = 30;
     },
     {0, 0, 0}},
    {"LightInTheMiddleOfItsRange",
     [](auto&, auto& s) {
         s.lights = {LightAt({0, 0, 9})};
         s.lights[0].attenuate = true;
         s.lights[0].innerRange = 6;
         s.lights[0].outerRange = 12;
     },
     {64, 32, 13}},
};

class MaterialColorGLTest : public CPictureTest, public testing::WithParamInterface<CColorCase> {};

TEST_P(MaterialColorGLTest, IsTheSumOfItsParts) {
    CPreparedMaterial material = Plain({0.5f, 0.25f, 0.1f});
    GetParam().change(material, m_builder.Scene());
    m_builder.Add(MakePlane(), material);
    EXPECT_TRUE(HasColor(Draw(GetParam().options), kMiddleX, kMiddleY, GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Rules, MaterialColorGLTest, testing::ValuesIn(kColors),
                         [](const auto& test) { return test.param.name; });

// --- where a map's parts lie: the square fills the picture, sampled a quarter in from its corners ---

struct CMapCase {
    std::string name;
    std::function<void(CPreparedMaterial&)> change;
    CColor topLeft, topRight, bottomLeft, bottomRight;

    friend void PrintTo(const CMapCase& c, std::ostream* out) { *out << c.name; }
};

constexpr CColor kRed{255, 0, 0}, kGreen{0, 255, 0}, kBlue{0, 0, 255}, kWhite{255, 255, 255},
    kOwn{128, 128, 128};

const CMapCase kMaps[] = {
    {"Upright", [](auto&) {}, kRed, kGreen, kBlue, kWhite},
    {"MovedByHalf",
     [](auto& m) {
         m.texture.offset = {0.5f, 0};
     },
     kGreen, kRed, kWhite, kBlue},
    {"MovedUpwardsMovesThePicture",
     [](auto& m) {
         m.texture.offset = {0, 0.5f};
         m.texture.tile = false;
     },
     kBlue, kWhite, kOwn, kOwn},
    {"TurnedByAQuarter", [](auto& m) { m.texture.rotationDeg = 90; }, kGreen, kWhite, kRed, kBlue},
    {"TiledTwice",
     [](auto& m) {
         m.texture.scale = {2, 1};
         m.texture.offset = {0.125f, 0};
     },
     kGreen, kGreen, kWhite, kWhite},
    {"Mirrored",
     [](auto& m) {
         m.texture.scale = {1, 1};
         m.texture.offset = {0.5f, 0};
         m.texture.mirror = true;
     },
     kRed, kRed, kBlue, kBlue},
    {"OnceShowsTheColourBesideIt",
     [](auto& m) {
         m.texture.scale = {4, 4};
         m.texture.tile = false;
     },
     kOwn, kOwn, kOwn, kOwn},
    {"Negative",
     [](auto& m) { m.texture.negative = true; },
     {0, 255, 255},
     {255, 0, 255},
     {255, 255, 0},
     {0, 0, 0}},
    {"HalfItsAmount",
     [](auto& m) { m.texture.amount = 0.5f; },
     {191, 64, 64},
     {64, 191, 64},
     {64, 64, 191},
     {191, 191, 191}},
    {"NoAmount", [](auto& m) { m.texture.amount = 0; }, kOwn, kOwn, kOwn, kOwn},
    {"SecondOverFirst",
     [](auto& m) {
         m.texture2 = m.texture;
         m.texture2.negative = true;
         m.texture2.amount = 0.5f;
     },
     kOwn, kOwn, kOwn, kOwn},
    {"SelfIllumination",
     [](auto& m) {
         m.selfIlluminationMap = m.texture;
         m.texture.texture = -1;
         m.diffuse = {0.4f, 0, 0};
     },
     {132, 0, 0},
     {162, 0, 0},
     {114, 0, 0},
     {204, 0, 0}},
};

class MapPlacementGLTest : public CPictureTest, public testing::WithParamInterface<CMapCase> {};

TEST_P(MapPlacementGLTest, ShowsEachPartWhereItBelongs) {
    CPreparedMaterial material = Plain({0.5f, 0.5f, 0.5f});
    material.texture = m_builder.AddTexture(QuarterImage());
    GetParam().change(material);
    m_builder.Add(MakePlane(2), material);
    LookFrom({0, 0, 60});  // from far away all of the square is lit straight on
    m_projection.m[0] *= 24;
    m_projection.m[5] *= 24;
    const CImage image = Draw();
    const CMapCase& expected = GetParam();
    EXPECT_TRUE(HasColor(image, 100, 60, expected.topLeft, 2));
    EXPECT_TRUE(HasColor(image, 220, 60, expected.topRight, 2));
    EXPECT_TRUE(HasColor(image, 100, 180, expected.bottomLeft, 2));
    EXPECT_TRUE(HasColor(image, 220, 180, expected.bottomRight, 2));
}

INSTANTIATE_TEST_SUITE_P(Maps, MapPlacementGLTest, testing::ValuesIn(kMaps),
                         [](const auto& test) { return test.param.name; });

}  // namespace
