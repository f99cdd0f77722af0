// SPDX-License-Identifier: MIT
#include "export/pov/CPovWriter.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "base/math/rotation_of_angles.h"
#include "camera/CSeenOptions.h"
#include "engine/test_scenes.h"
#include "export/pov/CPovCamera.h"
#include "export/pov/pov_export_format.h"
#include "files/CTestFolder.h"
#include "model/textures/CTextureLocator.h"
#include "row_name.h"

namespace {

using test_scenes::CBuilder;

std::string Written(CBuilder& builder, const C3ds2Pov::COutFormat& format = {}) {
    const CTestFolder folder;
    const CTextureLocator nowhere;
    const CSeenView seen = pov_export_format::SeenViewOf(builder.Scene(), format);
    const CStatus status =
        C3ds2Pov::TryExport({builder.Scene(), nowhere, seen}, folder / "a.pov", format, nullptr);
    EXPECT_TRUE(status.HasValue());
    return CTestFolder::TextOf(folder / "a.pov");
}

std::size_t Occurrences(const std::string& text, const std::string& what) {
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
    return count;
}

struct CTurned {
    const char* name;
    const char* camera;
    CVec3 viewAngles;
    CVec3 record;
};
class CPovCameraTest : public testing::TestWithParam<CTurned> {};

// Walking round the model shows what turning the model before the camera shows.
TEST_P(CPovCameraTest, StandsWhereTheTurnedModelIsSeenAlike) {
    CBuilder builder;
    builder.Add(test_scenes::MakeCube(), test_scenes::Plain({1, 1, 1}));
    C3ds2Pov::COutFormat format;
    format.cameraName = GetParam().camera;
    const auto eye = [&] { return CPovCamera(pov_export_format::SeenViewOf(builder.Scene(), format)).Eye(); };
    if (format.cameraName == "top_cam") format.angleZ = -90;
    const CVec3 straight = eye();
    format.angleX = GetParam().record.x;
    format.angleY = GetParam().record.y;
    format.angleZ = GetParam().record.z;
    const CVec3 a = GetParam().viewAngles;
    const CVec3 seen = RotationOfAngles(a.x, a.y, a.z).TransformPoint(eye());
    EXPECT_LT(Length(seen - straight), 1e-4f * Length(straight));
}
INSTANTIATE_TEST_SUITE_P(CPovWriter, CPovCameraTest,
                         testing::Values(CTurned{"Top", "top_cam", {10, 20, 30}, {20, -10, -120}},
                                         CTurned{"Iso", "iso_cam", {10, 20, 30}, {-10, 20, -30}},
                                         CTurned{"None", "", {0, 0, 45}, {0, 0, -45}}),
                         kRowName);

struct CPlaced {
    const char* name;
    CSeenOptions options;
};
class CPovCameraPlaced : public testing::TestWithParam<CPlaced> {};

// From where the camera stands the model, as it is written, is seen from where the view sees it.
TEST_P(CPovCameraPlaced, StandsBeforeTheWrittenModelAsTheViewDoes) {
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
    {"Mirrored", {.turnDeg = {5, 6, 7}, .scale = {-1, -1, -1}}},
    {"Zoomed", {.turnDeg = {5, 6, 7}, .orbitDeg = 40, .zoomBox = C2DRect(10, 10, 90, 200), .zoom = -20}},
};
INSTANTIATE_TEST_SUITE_P(CPovWriter, CPovCameraPlaced, testing::ValuesIn(kPlaced), kRowName);

TEST(CPovWriter, AFlattenedOrUnevenViewMovesModelAndLightsTogether) {
    CBuilder builder;
    builder.Add(test_scenes::MakeCube(), test_scenes::Plain({1, 1, 1}));
    builder.Scene().lights.push_back(test_scenes::LightAt({1, 2, 3}, 2));
    CSeenView seen;
    for (const double height : {4.0, 0.0}) {
        seen.scale = {1, 1, height};
        const CTestFolder folder;
        const CTextureLocator nowhere;
        ASSERT_TRUE(C3ds2Pov::TryExport({builder.Scene(), nowhere, seen}, folder / "a.pov", {}, nullptr));
        const std::string text = CTestFolder::TextOf(folder / "a.pov");
        EXPECT_NE(text.find(height > 0 ? "light_source{<1,2,12>" : "light_source{<1,2,0>"),
                  std::string::npos);
        EXPECT_EQ(text.find("matrix<1,0,0,0,1,0,0,0,4,0,0,0>") != std::string::npos, height > 0);
    }
}

TEST(CPovWriter, InstancesAreDeclaredOnceAndPlacedOften) {
    CBuilder builder;
    const int mesh = builder.AddMesh(test_scenes::MakeSphere());
    builder.AddNode(mesh, CMat4::Translation({5, 0, 0}));
    builder.AddNode(mesh, CMat4::Scale({-1, 1, 1}));
    const std::string text = Written(builder);
    EXPECT_EQ(Occurrences(text, "mesh2{"), 1u);
    EXPECT_EQ(Occurrences(text, "object{M0_0"), 2u);
    EXPECT_NE(text.find("matrix<1,0,0,0,1,0,0,0,1,5,0,0>"), std::string::npos);
    EXPECT_NE(text.find("matrix<-1,0,0,0,1,0,0,0,1,0,0,0>"), std::string::npos);
}

TEST(CPovWriter, WhatANodeFlattensIsMovedInsteadOfPlaced) {
    CBuilder builder;
    builder.Add(test_scenes::MakeCube(), test_scenes::Plain({1, 1, 1}),
                CMat4::Translation({0, 0, 7}) * CMat4::Scale({1, 1, 0}));
    const std::string text = Written(builder);
    EXPECT_EQ(text.find("matrix<"), std::string::npos);  // POV-Ray cannot invert such a one
    EXPECT_NE(text.find("<1,1,7>"), std::string::npos);
}

TEST(CPovWriter, TinyAndHugeScenesAreWrittenInAUsualSize) {
    for (const float size : {1e-7f, 1e9f}) {
        CBuilder builder;
        builder.Add(test_scenes::MakeCube(size), test_scenes::Plain({1, 1, 1}));
        const std::string text = Written(builder);
        const std::size_t at = text.find("Distance=");
        ASSERT_NE(at, std::string::npos);
        EXPECT_NEAR(std::strtod(&text[at + 9], nullptr), 1, 0.01);
    }
}

struct CLit {
    const char* name;
    bool off;
    std::int32_t mode;
    bool headlight;
};
class WritePovLightsTest : public testing::TestWithParam<CLit> {};

TEST_P(WritePovLightsTest, ThereIsAlwaysLight) {
    CBuilder builder;
    builder.Add(test_scenes::MakeCube(), test_scenes::Plain({1, 1, 1}));
    builder.Scene().lights.push_back(test_scenes::LightAt({1, 2, 3}, 2));
    builder.Scene().lights.back().off = GetParam().off;
    builder.Scene().lights.back().spot = true;
    builder.Scene().lights.back().target = {1, 2, 3};  // aims nowhere
    C3ds2Pov::COutFormat format;
    format.mode = GetParam().mode;
    const std::string text = Written(builder, format);
    EXPECT_EQ(Occurrences(text, "light_source{"), 1u);
    EXPECT_EQ(text.find("light_source{Eye") != std::string::npos, GetParam().headlight);
    EXPECT_EQ(text.find("spotlight point_at<1,2,2>") == std::string::npos, GetParam().headlight);
}
INSTANTIATE_TEST_SUITE_P(CPovWriter, WritePovLightsTest,
                         testing::Values(CLit{"On", false, 3, false}, CLit{"Off", true, 3, true},
                                         CLit{"NotWanted", false, 3 | C3ds2Pov::kHeadlight, true}),
                         kRowName);

TEST(CPovWriter, OptionsReachTheText) {
    CBuilder builder;
    CPreparedMaterial material = test_scenes::Plain({0.5f, 0.25f, 1});
    material.texture = builder.AddTexture(test_scenes::QuarterImage());
    builder.Add(test_scenes::MakeSphere(), material);
    CPreparedMaterial lamp = test_scenes::Plain({1, 1, 0});
    lamp.selfIllumination = 1;
    builder.Add(test_scenes::MakeCube(), lamp);
    const std::string plain = Written(builder);
    EXPECT_NE(plain.find("image_map{png \"a-t0.png\""), std::string::npos);
    EXPECT_NE(plain.find("finish{diffuse .6}"), std::string::npos);
    EXPECT_NE(plain.find("finish{diffuse .1 emission 1}"), std::string::npos);
    EXPECT_NE(plain.find("normal_vectors"), std::string::npos);
    EXPECT_NE(plain.find("no_shadow"), std::string::npos);
    EXPECT_EQ(plain.find("radiosity"), std::string::npos);

    C3ds2Pov::COutFormat format;
    format.radiosity = true;
    format.outputTextures = false;
    format.diffuse = 0.25f;
    format.selfDiffuse = 2;  // beyond its range
    format.bkGreen = 0.5f;
    format.mode = 0;
    const std::string other = Written(builder, format);
    EXPECT_EQ(other.find("image_map"), std::string::npos);
    EXPECT_EQ(other.find("uv_vectors"), std::string::npos);
    EXPECT_NE(other.find("rgb<.5,.25,1>}finish{diffuse .25}"), std::string::npos);
    EXPECT_NE(other.find("finish{diffuse 1 emission 1}"), std::string::npos);
    EXPECT_EQ(other.find("normal_vectors"), std::string::npos);
    EXPECT_EQ(other.find("no_shadow"), std::string::npos);
    EXPECT_NE(other.find("radiosity{"), std::string::npos);
    EXPECT_NE(other.find("background{rgb<0,0.5,0>}"), std::string::npos);
}

}  // namespace
