// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "engine/CPictureTest.h"
#include "row_name.h"

using namespace test_scenes;

namespace {

struct CPictureCase {
    std::string name;
    std::function<void(CBuilder&)> build;
    CVec3 eye{0, -5, 2};
    CDrawOptions options{};
};

CPreparedMaterial Shiny(CVec3 color, float shininess = 0.5f, EShading shading = EShading::Phong) {
    CPreparedMaterial material = Plain(color);
    material.shininess = shininess;
    material.shininessStrength = 0.8f;
    material.shading = shading;
    return material;
}

using CPixelValue = std::array<std::uint8_t, 4>;

CImage Bricks() {
    return MakeImage(64, 64, [](int x, int y) -> CPixelValue {
        const bool mortar = y % 16 < 2 || (x + (y / 16 % 2) * 16) % 32 < 2;
        return mortar ? CPixelValue{40, 40, 40, 255} : CPixelValue{230, 230, 230, 255};
    });
}

/** Round holes: white and opaque outside, black and transparent inside. */
CImage Holes() {
    return MakeImage(64, 64, [](int x, int y) -> CPixelValue {
        const int dx = x % 32 - 16, dy = y % 32 - 16;
        return dx * dx + dy * dy < 100 ? CPixelValue{0, 0, 0, 0} : CPixelValue{255, 255, 255, 255};
    });
}

/** A room: blue above, brown below, a white window. */
CImage Surroundings() {
    return MakeImage(128, 64, [](int x, int y) -> CPixelValue {
        if (x > 30 && x < 50 && y > 15 && y < 30) return {255, 255, 255, 255};
        return y < 32 ? CPixelValue{60, 90, 200, 255} : CPixelValue{120, 80, 40, 255};
    });
}

/** A sphere with one map, chosen by the member pointer. */
std::function<void(CBuilder&)> SphereWithMap(CPreparedMap CPreparedMaterial::*slot, CImage (*image)(),
                                             float repeat = 4) {
    return [=](CBuilder& b) {
        CPreparedMaterial material = Shiny({0.6f, 0.3f, 0.2f}, 0.3f);
        material.*slot = b.AddTexture(image());
        (material.*slot).scale = {repeat, repeat / 2};
        material.needsBlending = slot == &CPreparedMaterial::opacity;
        b.Add(MakeSphere(1.6f), material);
    };
}

/** One thing, under the lamps of the file if there are any. */
std::function<void(CBuilder&)> Show(const CPreparedMesh& mesh, const CPreparedMaterial& material,
                                    const std::vector<CPreparedLight>& lights = {}, CVec3 ambientLight = {}) {
    return [=](CBuilder& b) {
        b.Add(mesh, material);
        b.Scene().lights = lights;
        b.Scene().ambientLight = ambientLight;
    };
}

void TwoTextures(CBuilder& b) {
    CPreparedMaterial material = Plain({1, 1, 1});
    material.texture = b.AddTexture(Bricks());
    material.texture2 = b.AddTexture(QuarterImage());
    material.texture2.amount = 0.5f;
    b.Add(MakePlane(3), material);
}

void LargePixels(CBuilder& b) {
    CPreparedMaterial material = Plain({1, 1, 1});
    material.texture = b.AddTexture(QuarterImage(6));
    b.Add(MakePlane(3), material);
}

void SphereWithHoles(CBuilder& b) {
    CPreparedMaterial material = Plain({1, 1, 1});
    material.texture = b.AddTexture(Holes());
    material.texture.scale = {4, 2};
    material.needsBlending = material.twoSided = true;
    b.Add(MakeSphere(1.6f), material);
}

CPreparedMesh Box(CVec3 size, CVec3 middle) {
    CPreparedMesh mesh = MakeCube(1);
    for (CPreparedVertex& vertex : mesh.vertices) {
        float* p = vertex.position;
        p[0] = p[0] * size.x + middle.x;
        p[1] = p[1] * size.y + middle.y;
        p[2] = p[2] * size.z + middle.z;
    }
    mesh.bounds = mesh.bounds.Transformed(CMat4::Translation(middle) * CMat4::Scale(size));
    return mesh;
}

/** All in one part: whatever the order of its few large triangles is, some of it would be drawn over the
 * chips. A quarter of the picture is glass. */
void ChipsOnABoard(CBuilder& b) {
    CPreparedMesh board = Box({4, 4, 0.2f}, {});
    for (const CVec3 at : {CVec3{-1.2f, 1.2f, 0.6f}, CVec3{0.2f, -0.2f, 0.6f}, CVec3{1.2f, -1.2f, 0.6f}})
        Append(board, Box({0.8f, 0.8f, 0.8f}, at), 0);
    board.batches = {{0, 0, board.IndexCount()}};
    CPreparedMaterial material = Plain({1, 1, 1});
    material.texture = b.AddTexture(MakeImage(64, 64, [](int x, int y) -> CPixelValue {
        if (y >= 32) return x < 32 ? CPixelValue{40, 120, 40, 255} : CPixelValue{120, 120, 255, 96};
        return x < 32 ? CPixelValue{230, 200, 80, 255} : CPixelValue{200, 60, 40, 252};
    }));
    material.needsBlending = material.twoSided = true;
    b.Add(board, material);
}

void GlassBeforeSolid(CBuilder& b) {
    const auto glass = [](CVec3 color) {
        return CPreparedMaterial{.ambient = color,
                                 .diffuse = color,
                                 .transparency = 0.5f,
                                 .twoSided = true,
                                 .needsBlending = true};
    };
    // In the file's order the nearest comes first, which blends wrongly unless it is sorted.
    b.Add(MakeCube(1), glass({1, 0, 0}), CMat4::Translation({-0.6f, -1, 0}));
    b.Add(MakeCube(1), glass({0, 1, 0}), CMat4::Translation({0, 0.3f, 0}));
    b.Add(MakeCube(1), glass({0, 0, 1}), CMat4::Translation({0.6f, 1.6f, 0}));
    b.Add(MakePlane(5), Plain({0.8f, 0.8f, 0.8f}), CMat4::Translation({0, 0, -0.8f}));
}

void TwoGlowingSpheres(CBuilder& b) {
    b.Add(MakeSphere(0.8f), {.diffuse = {0.3f, 0, 0}, .additive = true}, CMat4::Translation({-0.4f, 0, 0}));
    b.Add(MakeSphere(0.8f), {.diffuse = {0, 0.5f, 0}, .additive = true}, CMat4::Translation({0.4f, 0, 0}));
}

void CubeAndItsMirrorImage(CBuilder& b) {
    CPreparedMaterial material = Shiny({0.7f, 0.7f, 0.7f});
    material.texture = b.AddTexture(QuarterImage());
    b.Add(MakeCube(1.2f), material, CMat4::Translation({-1.1f, 0, 0}));
    b.Add(MakeCube(1.2f), material, CMat4::Translation({1.1f, 0, 0}) * CMat4::Scale({-1, 1, 1}));
}

void FlattenedSphere(CBuilder& b) {
    b.Add(MakeSphere(1), Shiny({0.5f, 0.8f, 0.4f}), CMat4::Scale({2.2f, 1, 0.5f}));
}

CImage Quarters() {
    return QuarterImage();
}

using CMaterial = CPreparedMaterial;
const CMaterial kPaleFloor = Plain({0.8f, 0.8f, 0.8f});
const CMaterial kWire{.diffuse = {0.9f, 0.9f, 0.3f}, .twoSided = true, .wire = true, .wireSizePx = 2};
const CPreparedLight kReds{.position = {-4, -3, 1}, .color = {1, 0.2f, 0.2f}},
    kBlues{.position = {4, -3, 3}, .color = {0.2f, 0.4f, 1}},
    kSpot{.spot = true, .position = {0, 0, 3}, .hotspotDeg = 20, .falloffDeg = 40},
    kHardSpot{.spot = true, .position = {1, 0, 3}, .hotspotDeg = 30, .falloffDeg = 30},
    kFading{.position = {0, 0, 1}, .attenuate = true, .innerRange = 1.2f, .outerRange = 1.8f};

const auto kLitByTwo = Show(MakeSphere(1.6f), Shiny({0.7f, 0.7f, 0.7f}), {kReds, kBlues}, {0.1f, 0.2f, 0.1f});

const CPictureCase kCases[] = {
    {"headlight", Show(MakeSphere(1.6f), Shiny({0.2f, 0.4f, 0.8f}))},
    {"flat", Show(MakeSphere(1.6f, 8), Shiny({0.2f, 0.4f, 0.8f}, 0.5f, EShading::Flat))},
    {"metal", Show(MakeSphere(1.6f), Shiny({0.8f, 0.6f, 0.1f}, 0.3f, EShading::Metal))},
    {"wire", Show(MakeSphere(1.6f, 8), kWire)},
    {"texture", SphereWithMap(&CMaterial::texture, Quarters)},
    {"texture_minified", SphereWithMap(&CMaterial::texture, Quarters, 64)},
    {"texture_nearest", LargePixels, {0, -3, 2}, {.textureRenderMode = 2}},
    {"texture2", TwoTextures, {0, -2, 3}},
    {"opacity_map", SphereWithMap(&CMaterial::opacity, Holes)},
    {"specular_map", SphereWithMap(&CMaterial::specularMap, Quarters, 16)},
    {"shininess_map", SphereWithMap(&CMaterial::shininessMap, Bricks)},
    {"self_illumination_map", SphereWithMap(&CMaterial::selfIlluminationMap, Bricks)},
    {"bump", SphereWithMap(&CMaterial::bump, Bricks)},
    {"reflection", SphereWithMap(&CMaterial::reflection, Surroundings, 2)},
    {"texture_alpha", SphereWithHoles},
    {"texture_alpha_solid", ChipsOnABoard, {-2, -5, 4}},
    {"fixed_texture_alpha_solid", ChipsOnABoard, {-2, -5, 4}, {.fixedFunction = true}},
    {"transparency_sorted", GlassBeforeSolid},
    {"additive", TwoGlowingSpheres},
    {"mirrored_node", CubeAndItsMirrorImage, {1, -4, 2}},
    {"uneven_scale", FlattenedSphere},
    {"omni_lights", kLitByTwo},
    {"spot", Show(MakePlane(4), kPaleFloor, {kSpot}), {0, -2, 4}},
    {"spot_hard_edge", Show(MakePlane(4), kPaleFloor, {kHardSpot}), {0, -2, 4}},
    {"attenuation", Show(MakePlane(4), kPaleFloor, {kFading}), {0, -2, 4}},
    {"fixed_omni_lights", kLitByTwo, {0, -5, 2}, {.fixedFunction = true}},
    {"fixed_texture", SphereWithMap(&CMaterial::texture, Quarters), {0, -5, 2}, {.fixedFunction = true}},
};

class SceneRendererPictureGLTest : public CPictureTest, public testing::WithParamInterface<CPictureCase> {};

TEST_P(SceneRendererPictureGLTest, LooksAsAccepted) {
    GetParam().build(m_builder);
    LookFrom(GetParam().eye);
    EXPECT_TRUE(MatchesGolden(Draw(GetParam().options), GetParam().name));
}

INSTANTIATE_TEST_SUITE_P(Features, SceneRendererPictureGLTest, testing::ValuesIn(kCases), kRowName);

}  // namespace
