// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>

#include "engine/CPictureTest.h"

using namespace test_scenes;

namespace {

struct CPictureCase {
    std::string name;
    std::function<void(CBuilder&)> build;
    CVec3 eye{0, -5, 2};
    CDrawOptions options{};

    friend void PrintTo(const CPictureCase& c, std::ostream* out) { *out << c.name; }
};

CPreparedMaterial Shiny(CVec3 color, float shininess = 0.5f) {
    CPreparedMaterial material = Plain(color);
    material.shininess = shininess;
    material.shininessStrength = 0.8f;
    return material;
}

CPreparedMaterial With(CPreparedMaterial material, const std::function<void(CPreparedMaterial&)>& change) {
    change(material);
    return material;
}

CImage Bricks() {
    return MakeImage(64, 64, [](int x, int y) -> std::array<std::uint8_t, 4> {
        const bool mortar = y % 16 < 2 || (x + (y / 16 % 2) * 16) % 32 < 2;
        return mortar ? std::array<std::uint8_t, 4>{40, 40, 40, 255}
                      : std::array<std::uint8_t, 4>{230, 230, 230, 255};
    });
}

/** Round holes: white and opaque outside, black and transparent inside. */
CImage Holes() {
    return MakeImage(64, 64, [](int x, int y) -> std::array<std::uint8_t, 4> {
        const int dx = x % 32 - 16, dy = y % 32 - 16;
        return dx * dx + dy * dy < 100 ? std::array<std::uint8_t, 4>{0, 0, 0, 0}
                                       : std::array<std::uint8_t, 4>{255, 255, 255, 255};
    });
}

/** A room: blue above, brown below, a white window. */
CImage Surroundings() {
    return MakeImage(128, 64, [](int x, int y) -> std::array<std::uint8_t, 4> {
        if (x > 30 && x < 50 && y > 15 && y < 30) return {255, 255, 255, 255};
        return y < 32 ? std::array<std::uint8_t, 4>{60, 90, 200, 255}
                      : std::array<std::uint8_t, 4>{120, 80, 40, 255};
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

CPreparedLight Lamp(CVec3 position, CVec3 color) {
    CPreparedLight light;
    light.position = position;
    light.color = color;
    return light;
}

CPreparedLight Spot(CVec3 position, float hotspotDeg, float falloffDeg) {
    CPreparedLight light = Lamp(position, {1, 1, 1});
    light.spot = true;
    light.hotspotDeg = hotspotDeg;
    light.falloffDeg = falloffDeg;
    return light;
}

void GlassBeforeSolid(CBuilder& b) {
    const auto glass = [](CVec3 color) {
        return With(Plain(color), [](CPreparedMaterial& m) {
            m.transparency = 0.5f;
            m.needsBlending = true;
            m.twoSided = true;
        });
    };
    // In the file's order the nearest comes first, which blends wrongly unless it is sorted.
    b.Add(MakeCube(1), glass({1, 0, 0}), CMat4::Translation({-0.6f, -1, 0}));
    b.Add(MakeCube(1), glass({0, 1, 0}), CMat4::Translation({0, 0.3f, 0}));
    b.Add(MakeCube(1), glass({0, 0, 1}), CMat4::Translation({0.6f, 1.6f, 0}));
    b.Add(MakePlane(5), Plain({0.8f, 0.8f, 0.8f}), CMat4::Translation({0, 0, -0.8f}));
}

const CPictureCase kCases[] = {
    {"headlight",
     [](CBuilder& b) {
         b.Add(MakeSphere(1.6f), Shiny({0.2f, 0.4f, 0.8f}));
     }},
    {"flat",
     [](CBuilder& b) {
         b.Add(MakeSphere(1.6f, 8),
               With(Shiny({0.2f, 0.4f, 0.8f}), [](auto& m) { m.shading = EShading::Flat; }));
     }},
    {"metal",
     [](CBuilder& b) {
         b.Add(MakeSphere(1.6f),
               With(Shiny({0.8f, 0.6f, 0.1f}, 0.3f), [](auto& m) { m.shading = EShading::Metal; }));
     }},
    {"wire",
     [](CBuilder& b) {
         b.Add(MakeSphere(1.6f, 8), With(Plain({0.9f, 0.9f, 0.3f}), [](auto& m) {
                   m.wire = true;
                   m.wireSizePx = 2;
                   m.twoSided = true;
               }));
     }},
    {"texture", SphereWithMap(&CPreparedMaterial::texture, [] { return QuarterImage(); })},
    {"texture_minified", SphereWithMap(
                             &CPreparedMaterial::texture, [] { return QuarterImage(); }, 64)},
    {"texture_nearest",
     [](CBuilder& b) {
         CPreparedMaterial material = Plain({1, 1, 1});
         material.texture = b.AddTexture(QuarterImage(6));
         b.Add(MakePlane(3), material);
     },
     {0, -3, 2},
     {true, 2}},
    {"texture2",
     [](CBuilder& b) {
         CPreparedMaterial material = Plain({1, 1, 1});
         material.texture = b.AddTexture(Bricks());
         material.texture2 = b.AddTexture(QuarterImage());
         material.texture2.amount = 0.5f;
         b.Add(MakePlane(3), material);
     },
     {0, -2, 3}},
    {"opacity_map", SphereWithMap(&CPreparedMaterial::opacity, Holes)},
    {"specular_map", SphereWithMap(
                         &CPreparedMaterial::specularMap, [] { return QuarterImage(); }, 16)},
    {"shininess_map", SphereWithMap(&CPreparedMaterial::shininessMap, Bricks)},
    {"self_illumination_map", SphereWithMap(&CPreparedMaterial::selfIlluminationMap, Bricks)},
    {"bump", SphereWithMap(&CPreparedMaterial::bump, Bricks)},
    {"reflection", SphereWithMap(&CPreparedMaterial::reflection, Surroundings, 2)},
    {"texture_alpha",
     [](CBuilder& b) {
         CPreparedMaterial material = Plain({1, 1, 1});
         material.texture = b.AddTexture(Holes());
         material.texture.scale = {4, 2};
         material.needsBlending = material.twoSided = true;
         b.Add(MakeSphere(1.6f), material);
     }},
    {"transparency_sorted", GlassBeforeSolid},
    {"additive",
     [](CBuilder& b) {
         b.Add(MakeSphere(0.8f), With(Plain({0.3f, 0, 0}), [](auto& m) { m.additive = true; }),
               CMat4::Translation({-0.4f, 0, 0}));
         b.Add(MakeSphere(0.8f), With(Plain({0, 0.5f, 0}), [](auto& m) { m.additive = true; }),
               CMat4::Translation({0.4f, 0, 0}));
     }},
    {"mirrored_node",
     [](CBuilder& b) {
         CPreparedMaterial material = Shiny({0.7f, 0.7f, 0.7f});
         material.texture = b.AddTexture(QuarterImage());
         b.Add(MakeCube(1.2f), material, CMat4::Translation({-1.1f, 0, 0}));
         b.Add(MakeCube(1.2f), material, CMat4::Translation({1.1f, 0, 0}) * CMat4::Scale({-1, 1, 1}));
     },
     {1, -4, 2}},
    {"uneven_scale",
     [](CBuilder& b) {
         b.Add(MakeSphere(1), Shiny({0.5f, 0.8f, 0.4f}), CMat4::Scale({2.2f, 1, 0.5f}));
     }},
    {"omni_lights",
     [](CBuilder& b) {
         b.Add(MakeSphere(1.6f), Shiny({0.7f, 0.7f, 0.7f}));
         b.Scene().lights = {Lamp({-4, -3, 1}, {1, 0.2f, 0.2f}), Lamp({4, -3, 3}, {0.2f, 0.4f, 1})};
         b.Scene().ambientLight = {0.1f, 0.2f, 0.1f};
     }},
    {"spot",
     [](CBuilder& b) {
         b.Add(MakePlane(4), Plain({0.8f, 0.8f, 0.8f}));
         b.Scene().lights = {Spot({0, 0, 3}, 20, 40)};
     },
     {0, -2, 4}},
    {"spot_hard_edge",
     [](CBuilder& b) {
         b.Add(MakePlane(4), Plain({0.8f, 0.8f, 0.8f}));
         b.Scene().lights = {Spot({1, 0, 3}, 30, 30)};
     },
     {0, -2, 4}},
    {"attenuation",
     [](CBuilder& b) {
         b.Add(MakePlane(4), Plain({0.8f, 0.8f, 0.8f}));
         b.Scene().lights = {Lamp({0, 0, 1}, {1, 1, 1})};
         b.Scene().lights[0].attenuate = true;
         b.Scene().lights[0].innerRange = 1.2f;
         b.Scene().lights[0].outerRange = 1.8f;
     },
     {0, -2, 4}},
    {"fixed_texture",
     SphereWithMap(&CPreparedMaterial::texture, [] { return QuarterImage(); }),
     {0, -5, 2},
     {true, 0, true}},
};

class SceneRendererPictureGLTest : public CPictureTest, public testing::WithParamInterface<CPictureCase> {};

TEST_P(SceneRendererPictureGLTest, LooksAsAccepted) {
    GetParam().build(m_builder);
    LookFrom(GetParam().eye);
    EXPECT_TRUE(MatchesGolden(Draw(GetParam().options), GetParam().name));
}

INSTANTIATE_TEST_SUITE_P(Features, SceneRendererPictureGLTest, testing::ValuesIn(kCases),
                         [](const auto& test) { return test.param.name; });

}  // namespace
