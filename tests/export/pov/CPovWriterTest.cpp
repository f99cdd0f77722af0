// SPDX-License-Identifier: MIT
#include "export/pov/CPovWriter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

#include "camera/CSeenOptions.h"
#include "engine/test_scenes.h"
#include "export/pov/CPovCamera.h"
#include "export/pov/pov_export_format.h"
#include "files/CTestFolder.h"
#include "model/textures/CTextureLocator.h"
#include "row_name.h"

using namespace test_scenes;

namespace {

struct CGoldenCase {
    const char* name;
    std::function<void(CBuilder&)> build;
    C3ds2Pov::COutFormat format{};
    CVec3d scale{1, 1, 1};  ///< of the view
};
class CPovWriterTest : public testing::TestWithParam<CGoldenCase> {};

/** Without the record of pictures: their bytes depend on the library that packs them. */
std::string WithoutRecord(const std::string& text) {
    return text.substr(0, text.find("// The pictures written with this file"));
}

// Equals golden/NAME.pov. With ORBIVUE_WRITE_GOLDEN set it is written instead, for a person to read.
TEST_P(CPovWriterTest, WritesTheAcceptedText) {
    const CGoldenCase& c = GetParam();
    CBuilder builder;
    c.build(builder);
    CSeenView seen = pov_export_format::SeenViewOf(builder.Scene(), c.format);
    seen.scale = c.scale;
    const CTestFolder folder;
    ASSERT_TRUE(
        C3ds2Pov::TryExport({builder.Scene(), CTextureLocator(), seen}, folder / "a.pov", c.format, nullptr));
    const std::string golden = ORBIVUE_POV_GOLDEN + std::string(c.name) + ".pov";
    if (std::getenv("ORBIVUE_WRITE_GOLDEN")) std::filesystem::copy_file(folder / "a.pov", golden);
    EXPECT_EQ(WithoutRecord(CTestFolder::TextOf(folder / "a.pov")),
              WithoutRecord(CTestFolder::TextOf(golden)));
}

void ManyMaterials(CBuilder& b) {
    CPreparedMaterial material = Plain({0.5f, 0.25f, 1});
    material.texture = b.AddTexture(QuarterImage());
    b.Add(MakeSphere(1, 2), material);
    CPreparedMaterial lamp = Plain({1, 1, 0});
    lamp.selfIllumination = 1;
    b.Add(MakePlane(), lamp);
}

void TwoInstances(CBuilder& b) {
    const int mesh = b.AddMesh(MakePlane());
    b.AddNode(mesh, CMat4::Translation({5, 0, 0}));
    b.AddNode(mesh, CMat4::Scale({-1, 1, 1}));
}

/** Smooth, and hard edges beside them: one normal serves many places and the other way round. */
void CubeAndSphere(CBuilder& b) {
    CPreparedMesh mesh = MakeCube();
    Append(mesh, MakeSphere(1, 3), 0);
    CPreparedMaterial mapped;
    mapped.texture = b.AddTexture(QuarterImage());
    b.Add(mesh, mapped);
}

/** Whose normals are equal but not the plane's, which POV-Ray would take instead. */
void LeaningNormals(CBuilder& b) {
    CPreparedMesh mesh = MakePlane();
    for (CPreparedVertex& vertex : mesh.vertices) vertex.normal[0] = vertex.normal[2];
    b.Add(mesh, Plain({1, 1, 1}));
}

/** One of its two triangles has no area and is left out. */
void HalfASquare(CBuilder& b) {
    CPreparedMesh mesh = MakePlane();
    mesh.vertices[1] = mesh.vertices[0];
    b.Add(mesh, Plain({1, 1, 1}));
}

/** Moved instead of placed: POV-Ray cannot invert its matrix. */
void FlattenedNode(CBuilder& b) {
    b.Add(MakeCube(), Plain({1, 1, 1}), CMat4::Translation({0, 0, 7}) * CMat4::Scale({1, 1, 0}));
}

std::function<void(CBuilder&)> SquareUnder(const std::vector<CPreparedLight>& lights, float side = 2) {
    return [=](CBuilder& b) {
        b.Add(MakePlane(side), Plain({1, 1, 1}));
        b.Scene().lights = lights;
    };
}
void SquareInTheDark(CBuilder& b) {
    SquareUnder({LightAt({1, 2, -3}, 2)})(b);
    b.Scene().headlightJoins = true;
}
const CPreparedLight kLamp = LightAt({1, 2, 3}, 2),
                     kAimless{.spot = true, .position = {1, 2, 3}, .target = {1, 2, 3}},
                     kOff{.off = true, .position = {1, 2, 3}};

const CGoldenCase kGolden[] = {
    {"defaults", ManyMaterials},
    {"all_options",
     ManyMaterials,
     {.radiosity = true,
      .diffuse = 0.25F,
      .selfDiffuse = 2,  // beyond its range
      .outputTextures = false,
      .bkGreen = 0.5F,
      .mode = 0}},
    {"two_instances", TwoInstances},
    {"cube_and_sphere", CubeAndSphere},
    {"leaning_normals", LeaningNormals},
    {"half_a_square", HalfASquare},
    {"flattened_node", FlattenedNode},
    {"stretched_view", SquareUnder({kLamp}), {}, {1, 1, 4}},
    {"flattened_view", SquareUnder({kLamp}), {}, {1, 1, 0}},
    {"aimless_spot", SquareUnder({kAimless})},
    {"one_of_two_lights", SquareUnder({kOff, kLamp})},
    {"light_off", SquareUnder({kOff})},
    {"light_that_misses", SquareInTheDark},
    {"headlight", SquareUnder({kLamp}), {.mode = 3 | C3ds2Pov::kHeadlight}},
    {"tiny", SquareUnder({kLamp}, 1e-7f)},
    {"huge", SquareUnder({kLamp}, 1e9f)},
};
INSTANTIATE_TEST_SUITE_P(Golden, CPovWriterTest, testing::ValuesIn(kGolden), kRowName);

// Each of the five value maps would double the text of a material, or treble it where it is not tiled.
TEST(CPovWriterTest, MapsDoNotMultiplyTheText) {
    CBuilder builder;
    CPreparedMaterial material = Plain({0.5f, 0.25f, 1});
    material.shininessStrength = 0.6f;
    float amount = 0.9f;
    for (CPreparedMap CPreparedMaterial::*map :
         {&CPreparedMaterial::texture, &CPreparedMaterial::texture2, &CPreparedMaterial::opacity,
          &CPreparedMaterial::selfIlluminationMap, &CPreparedMaterial::shininessMap,
          &CPreparedMaterial::specularMap, &CPreparedMaterial::bump}) {
        CPreparedMap& made = material.*map;
        made = builder.AddTexture(QuarterImage(4));
        made.tile = false;
        made.amount = amount -= 0.05f;
    }
    builder.Add(MakePlane(), material);
    for (CPreparedTexture& texture : builder.Scene().textures) texture.hasTranslucency = true;
    const CTestFolder folder;
    const CSeenView seen = pov_export_format::SeenViewOf(builder.Scene(), {});
    ASSERT_TRUE(
        C3ds2Pov::TryExport({builder.Scene(), CTextureLocator(), seen}, folder / "a.pov", {}, nullptr));
    EXPECT_LT(std::filesystem::file_size(folder / "a.pov"), 30'000u);
}

struct CPlaced {
    const char* name;
    CSeenOptions options;
};
class CPovCameraTest : public testing::TestWithParam<CPlaced> {};

// From where the camera stands the model, as it is written, is seen from where the view sees it.
TEST_P(CPovCameraTest, StandsBeforeTheWrittenModelAsTheViewDoes) {
    CSeenView seen;
    seen.camera.SetModel({{5, 6, 7}, 2});
    seen.camera.SetPreset(ECameraPreset::Iso);
    GetParam().options.Apply(seen);
    const CPovCamera camera(seen);
    const CVec3 eye = camera.Place().AffineInverse().TransformPoint(camera.Eye());
    EXPECT_LT(Length(seen.ModelMatrix().TransformPoint(eye) - seen.Eye()), 1e-3f);
}
const CPlaced kPlaced[] = {
    {"Turned", {.anglesDeg = {10, 20, 30}, .turnDeg = {50, 60, 70}}},
    {"Pivot", {.turnDeg = {50, 60, 70}, .pivot = {1, -2, 3}}},
    {"Even", {.anglesDeg = {0, 0, 30}, .turnDeg = {5, 6, 7}, .pivot = {1, -2, 3}, .scale = {3, 3, 3}}},
    {"Uneven", {.anglesDeg = {0, 0, 30}, .turnDeg = {5, 6, 7}, .pivot = {1, -2, 3}, .scale = {3, 2, 1}}},
    {"Panned", {.anglesDeg = {0, 0, 30}, .turnDeg = {5, 60, 7}, .scale = {3, 3, 3}, .pan = {50, -70}}},
    {"PannedPivot", {.turnDeg = {50, 60, 70}, .orbitDeg = 40, .pivot = {1, -2, 3}, .pan = {-30, 90}}},
    {"PannedUneven", {.turnDeg = {5, 6, 7}, .scale = {3, 2, 1}, .pan = {50, -70}}},
    {"Mirrored", {.turnDeg = {5, 6, 7}, .scale = {-1, -1, -1}}},
    {"Zoomed", {.turnDeg = {5, 6, 7}, .orbitDeg = 40, .zoomBox = C2DRect(10, 10, 90, 200), .zoom = -20}},
};
INSTANTIATE_TEST_SUITE_P(Views, CPovCameraTest, testing::ValuesIn(kPlaced), kRowName);

}  // namespace
