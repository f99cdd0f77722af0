// SPDX-License-Identifier: MIT
#include "export/gltf/write_gltf.h"

#include <gtest/gtest.h>

#include <functional>

#include "base/CStopwatch.h"
#include "base/jobs/CJobProgress.h"
#include "engine/test_scenes.h"
#include "export/gltf/CGltfPictures.h"
#include "export/gltf/CGltfReader.h"
#include "files/CTestFolder.h"
#include "model/textures/CTextureLocator.h"
#include "picture/decode/image_codec.h"
#include "row_name.h"

using namespace test_scenes;

namespace {

CGltfReader Written(const CPreparedScene& scene, const CGltfOptions& options = {}) {
    const auto glb = WriteGlb({scene, CTextureLocator()}, options);
    EXPECT_TRUE(glb) << glb.Error().Text();
    return CGltfReader(glb.Value());
}

/** A material on a square, and what it becomes: the parts of the JSON, without those that are not named. */
struct CMaterialCase {
    const char* name;
    std::function<void(CPreparedMaterial&, CBuilder&)> build;
    const char* wanted;
    bool hasTexCoords = true;
};
class GltfMaterialTest : public testing::TestWithParam<CMaterialCase> {};

CImage Leaf(int side, std::uint8_t between) {
    return MakeImage(side, side, [=](int x, int y) -> std::array<std::uint8_t, 4> {
        const std::uint8_t alpha = y == 0 ? between : x < side / 2 ? 0 : 255;
        return {200, 100, 50, alpha};
    });
}

// Wanted members may be whole objects: the material must have all that these have.
void ExpectHas(const nlohmann::json& has, const nlohmann::json& wanted, const std::string& path) {
    if (wanted.is_object()) {
        for (const auto& [key, value] : wanted.items()) {
            if (value == "none") {
                EXPECT_FALSE(has.contains(key)) << path << '/' << key;
            } else {
                ASSERT_TRUE(has.contains(key)) << path << '/' << key << " of " << has;
                ExpectHas(has[key], value, path + '/' + key);
            }
        }
    } else if (wanted.is_array()) {
        ASSERT_EQ(has.size(), wanted.size()) << path;
        for (std::size_t i = 0; i < wanted.size(); ++i)
            ExpectHas(has[i], wanted[i], path + '/' + std::to_string(i));
    } else if (wanted.is_number()) {
        EXPECT_NEAR(has.get<double>(), wanted.get<double>(), 1e-3) << path;
    } else {
        EXPECT_EQ(has, wanted) << path;
    }
}

TEST_P(GltfMaterialTest, Becomes) {
    CBuilder builder;
    CPreparedMaterial material = Plain({0.5F, 0.25F, 1});
    GetParam().build(material, builder);
    CPreparedMesh plane = MakePlane();
    if (!GetParam().hasTexCoords) plane.texCoords.clear();
    builder.Add(plane, material);
    const CGltfReader reader = Written(builder.Scene());
    ASSERT_EQ(reader.Json()["materials"].size(), 1U);
    ExpectHas(reader.Json()["materials"][0], nlohmann::json::parse(GetParam().wanted), {});
}

void Textured(CPreparedMaterial& m, CBuilder& b) {
    m.texture = b.AddTexture(QuarterImage());
}
void WithLeaf(CPreparedMaterial& m, CBuilder& b) {
    m.texture = b.AddTexture(Leaf(32, 0));
    m.needsBlending = true;
}
void WithHaze(CPreparedMaterial& m, CBuilder& b) {
    m.texture = b.AddTexture(Leaf(4, 128));
    m.needsBlending = true;
}
void WithOpacity(CPreparedMaterial& m, CBuilder& b) {
    m.texture = b.AddTexture(QuarterImage(64));
    m.opacity = b.AddTexture(Leaf(64, 0));
    m.transparency = 1;  // which the map overrules
    m.needsBlending = true;
}
void WithOtherOpacity(CPreparedMaterial& m, CBuilder& b) {
    WithOpacity(m, b);
    m.opacity.scale = {2, 2};
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, GltfMaterialTest,
    testing::Values(
        CMaterialCase{
            "Plain", [](auto&, auto&) {},
            R"({"pbrMetallicRoughness": {"baseColorFactor": [0.2140, 0.0509, 1, 1], "metallicFactor": 0,
                          "baseColorTexture": "none"}, "alphaMode": "none", "doubleSided": "none", "emissiveFactor": "none",
                          "extensions": {"KHR_materials_specular": {"specularFactor": 0}},
                          "extras": {"orbivue": {"diffuse": [0.5, 0.25, 1], "opacity": 1, "blend": "none", "maps": "none"}}})"},
        CMaterialCase{"Shiny",
                      [](auto& m, auto&) {
                          m.shininess = 0.5F;
                          m.shininessStrength = 0.8F;
                          m.specular = {1, 0.5F, 0.5F};
                      },
                      R"({"pbrMetallicRoughness": {"roughnessFactor": 0.4925},
                          "extensions": {"KHR_materials_specular": {"specularFactor": 0.8, "specularColorFactor": [1, 0.214, 0.214]}},
                          "extras": {"orbivue": {"exponent": 32, "strength": 0.8}}})"},
        CMaterialCase{
            "Glass",
            [](auto& m, auto&) {
                m.transparency = 0.75F;
                m.needsBlending = m.twoSided = true;
            },
            R"({"pbrMetallicRoughness": {"baseColorFactor": [0.2140, 0.0509, 1, 0.25]}, "alphaMode": "BLEND",
                          "doubleSided": true, "extras": {"orbivue": {"opacity": 0.25, "blend": true}}})"},
        CMaterialCase{"Lamp", [](auto& m, auto&) { m.selfIllumination = 1; },
                      R"({"emissiveFactor": [0.2140, 0.0509, 1]})"},
        CMaterialCase{
            "Textured", Textured,
            R"({"pbrMetallicRoughness": {"baseColorFactor": [1, 1, 1, 1], "baseColorTexture": {"index": 0, "extensions": "none"}},
                          "alphaMode": "none", "extras": {"orbivue": {"maps": {"texture": {"texture": 0, "uv": "none"}}}}})"},
        CMaterialCase{
            "TexturedWithoutCoordinates", Textured,
            R"({"pbrMetallicRoughness": {"baseColorFactor": [0.2140, 0.0509, 1, 1], "baseColorTexture": "none"},
                          "extras": {"orbivue": {"maps": "none"}}})",
            false},
        CMaterialCase{
            "PlacedTexture",
            [](auto& m, auto& b) {
                Textured(m, b);
                m.texture.scale = {2, 2};
                m.texture.rotationDeg = 90;
            },
            R"({"pbrMetallicRoughness": {"baseColorTexture": {"extensions": {"KHR_texture_transform":
                            {"rotation": -1.5708, "scale": [2, 2], "offset": [1.5, -0.5]}}}},
                          "extras": {"orbivue": {"maps": {"texture": {"uv": [0, 2, -2, 0, 1.5, -0.5]}}}}})"},
        CMaterialCase{
            "Leaf", WithLeaf,
            R"({"alphaMode": "MASK", "extras": {"orbivue": {"maps": {"texture": {"alphaIsOpacity": true}}}}})"},
        CMaterialCase{"Haze", WithHaze, R"({"alphaMode": "BLEND"})"},
        CMaterialCase{
            "OpacityJoinsTheTexture", WithOpacity,
            R"({"pbrMetallicRoughness": {"baseColorFactor": [1, 1, 1, 1], "baseColorTexture": {"index": 0}},
                          "extras": {"orbivue": {"opacity": 0, "maps": {"texture": {"texture": 0, "ignoreAlpha": true},
                                                  "opacity": {"texture": 0, "alphaSource": true}}}}})"},
        CMaterialCase{
            "OpacityPlacedOtherwise", WithOtherOpacity,
            R"({"pbrMetallicRoughness": {"baseColorFactor": [1, 1, 1, 1], "baseColorTexture": {"index": 0}},
                          "extras": {"orbivue": {"maps": {"texture": {"texture": 0}, "opacity": {"texture": 1}}}}})"}),
    kRowName);

TEST(WriteGltfTest, JoinedPictureHasTheMapsBrightnessAsAlpha) {
    CBuilder builder;
    CPreparedMaterial material = Plain({1, 1, 1});
    WithOpacity(material, builder);
    builder.Add(MakePlane(), material);
    const auto image = image_codec::DecodeImage(Written(builder.Scene()).Picture(0), {});
    ASSERT_TRUE(image);
    const CImage wanted = QuarterImage(64);
    const std::uint8_t* pixel = image.Value().image.Pixel(50, 50);
    EXPECT_TRUE(std::equal(pixel, pixel + 3, wanted.Pixel(50, 50)));
    EXPECT_EQ(pixel[3], 124);  // the grey of 200, 100, 50
}

TEST(WriteGltfTest, OfAllPairsOfPicturesOnlyAFewAreJoined) {
    constexpr int kPictures = 8;
    CBuilder builder;
    for (int i = 0; i < kPictures; ++i) builder.AddTexture({1024, 1024, std::vector<std::uint8_t>(4 << 20)});
    const CTextureLocator locator;
    CGltfPictures pictures({builder.Scene(), locator}, {});
    int joined = 0;
    for (int colour = 0; colour < kPictures; ++colour) {
        for (int opacity = 0; opacity < kPictures; ++opacity)
            joined += pictures.MayJoin({colour, false, opacity, false, false}) ? 1 : 0;
    }
    EXPECT_EQ(joined, kPictures + 4);
    EXPECT_TRUE(pictures.MayJoin({0, false, 0, false, false})) << "as before";
}

TEST(WriteGltfTest, ManyTrianglesAtOneVertexTakeNoLonger) {
    CPreparedMesh mesh = MakePlane();
    mesh.indices16.clear();
    mesh.texCoords.clear();
    for (int i = 0; i < 300'000; ++i) mesh.indices16.insert(mesh.indices16.end(), {0, 1, 2});
    mesh.batches[0].indexCount = static_cast<std::uint32_t>(mesh.indices16.size());
    CBuilder builder;
    builder.Add(mesh, Plain({1, 1, 1}));
    CGltfOptions options;
    options.compress = true;
    const CStopwatch watch;
    (void)Written(builder.Scene(), options);
    EXPECT_LT(watch.Ms(), 5000);  // the square of their number takes minutes
}

TEST(WriteGltfTest, EqualThingsAreWrittenOnceAndUnusedOnesNot) {
    CBuilder builder;
    CPreparedMaterial red = Plain({1, 0, 0}), blue = Plain({0, 0, 1});
    red.texture = builder.AddTexture(QuarterImage());
    blue.texture = builder.AddTexture(QuarterImage());
    builder.AddTexture(QuarterImage(128));
    builder.AddMaterial(Plain({0, 1, 0}));
    builder.Add(MakePlane(), red);
    builder.Add(MakePlane(), blue);
    builder.Add(MakePlane(3), red);
    CPreparedMaterial invisible = Plain({1, 1, 1});
    invisible.transparency = 1;
    builder.Add(MakePlane(4), invisible);
    builder.Scene().nodes[2].visible = false;
    const CGltfReader reader = Written(builder.Scene());
    EXPECT_EQ(reader.Json()["materials"].size(), 2U);
    EXPECT_EQ(reader.Json()["images"].size(), 1U);
    EXPECT_EQ(reader.Json()["meshes"].size(), 2U);
    EXPECT_EQ(reader.Json()["accessors"].size(), 4U);
}

TEST(WriteGltfTest, LargestSixteenBitNumberIsNoIndex) {
    for (const std::size_t vertices : {65535U, 65536U}) {
        CBuilder builder;
        CPreparedMesh mesh = MakePlane();
        mesh.vertices.resize(vertices, mesh.vertices[0]);
        mesh.texCoords.clear();
        mesh.indices16.back() = static_cast<std::uint16_t>(vertices - 1);
        builder.Add(mesh, Plain({1, 1, 1}));
        const CGltfReader reader = Written(builder.Scene());
        const auto indices = reader.Json()["meshes"][0]["primitives"][0]["indices"].get<std::size_t>();
        EXPECT_EQ(reader.Json()["accessors"][indices]["componentType"], vertices > 65535 ? 5125 : 5123);
    }
}

TEST(WriteGltfTest, NamesAreWellFormedAndDifferent) {
    CBuilder builder;
    for (const char* name : {"caf\xE9", "caf\xE9", "a\"\\\n\x7F"}) {
        CPreparedMaterial material = Plain({1, 1, static_cast<float>(builder.Scene().nodes.size())});
        material.name = name;
        builder.Add(MakePlane(), material);
    }
    const CGltfReader reader = Written(builder.Scene());  // parsing fails for what is not UTF-8
    const auto& materials = reader.Json()["materials"];
    EXPECT_EQ(materials[0]["name"], "caf\xEF\xBF\xBD");
    EXPECT_EQ(materials[1]["name"], "caf\xEF\xBF\xBD#2");
    EXPECT_EQ(materials[2]["name"], "a\"\\\n\x7F");
}

TEST(WriteGltfTest, AnEmptySceneIsAFile) {
    for (const bool compress : {false, true}) {
        const CGltfReader reader = Written(CPreparedScene{}, {.compress = compress});
        EXPECT_EQ(reader.Json()["nodes"].size(), 1U);
        EXPECT_FALSE(reader.Json().contains("buffers"));
    }
}

TEST(WriteGltfTest, LargePicturesAreHalved) {
    CBuilder builder;
    CPreparedMaterial material = Plain({1, 1, 1});
    material.texture = builder.AddTexture(QuarterImage(100));
    builder.Add(MakePlane(), material);
    const auto image =
        image_codec::DecodeImage(Written(builder.Scene(), {.maxTextureSide = 40}).Picture(0), {});
    EXPECT_EQ(image.Value().image.width, 25);
}

TEST(WriteGltfTest, LightsAreAsBrightInTheMiddleAsTheFilesAre) {
    CBuilder builder;
    builder.Add(MakeCube(), Plain({1, 1, 1}));
    builder.Scene().lights = {LightAt({0, 0, 10}, 0.5F), LightAt({0, 0, 10}, -1)};
    const CGltfReader reader = Written(builder.Scene());
    const auto& lights = reader.Json()["extensions"]["KHR_lights_punctual"]["lights"];
    ASSERT_EQ(lights.size(), 1U);  // none takes light away
    EXPECT_NEAR(lights[0]["intensity"].get<double>(), 0.5 * 3.14159 * 100, 0.1);
    EXPECT_EQ(reader.Json()["scenes"][0]["extras"]["orbivue"]["lights"].size(), 2U);
}

TEST(WriteGltfTest, AFileOfTheModelIsNotOverwritten) {
    const CTestFolder folder;
    CPreparedScene scene;
    scene.sourceFiles = {folder.Add("model.glb", "mine")};
    const CStatus status = WriteGlbFile({scene, CTextureLocator()}, folder / "model.glb", {});
    ASSERT_FALSE(status);
    EXPECT_EQ(status.Error().code, EErrorCode::BadArgument);
    EXPECT_EQ(CTestFolder::TextOf(folder / "model.glb"), "mine");
    EXPECT_TRUE(WriteGlbFile({scene, CTextureLocator()}, folder / "other.glb", {}));
}

TEST(WriteGltfTest, CancelledLeavesNothing) {
    const CTestFolder folder;
    CBuilder builder;
    builder.Add(MakeCube(), Plain({1, 1, 1}));
    CJobProgress progress;
    progress.Cancel();
    const CStatus status =
        WriteGlbFile({builder.Scene(), CTextureLocator()}, folder / "a.glb", {}, &progress);
    ASSERT_FALSE(status);
    EXPECT_EQ(status.Error().code, EErrorCode::Cancelled);
    EXPECT_EQ(folder.Count(), 0U);
}

}  // namespace
