// SPDX-License-Identifier: MIT
#include <lib3ds/file.h>

#include <array>

#include "make_samples/scenes.h"
#include "scene_builder/CSceneBuilder.h"
#include "scene_builder/shapes.h"

namespace scenes {
namespace {

/** (radius, height) from the middle of the foot up the outside and down the inside; as many points in each. */
using CProfile = std::array<CVec2, 12>;
constexpr CProfile kLump{{{0, 0},
                          {2.4f, 0},
                          {2.9f, 0.5f},
                          {3.0f, 1.0f},
                          {2.9f, 1.5f},
                          {2.6f, 2.0f},
                          {2.0f, 2.3f},
                          {1.4f, 2.45f},
                          {1.0f, 2.5f},
                          {0.7f, 2.52f},
                          {0.4f, 2.53f},
                          {0, 2.54f}}};
constexpr CProfile kBowl{{{0, 0},
                          {1.5f, 0},
                          {1.6f, 0.3f},
                          {2.4f, 0.8f},
                          {3.1f, 1.6f},
                          {3.5f, 2.5f},
                          {3.7f, 3.3f},
                          {3.5f, 3.3f},
                          {3.2f, 2.5f},
                          {2.6f, 1.5f},
                          {1.6f, 0.8f},
                          {0, 0.5f}}};
constexpr CProfile kVase{{{0, 0},
                          {1.4f, 0},
                          {1.5f, 0.4f},
                          {2.3f, 1.8f},
                          {2.5f, 3.4f},
                          {1.1f, 5.4f},
                          {1.5f, 6.4f},
                          {1.3f, 6.4f},
                          {0.9f, 5.4f},
                          {2.2f, 3.4f},
                          {1.6f, 1.0f},
                          {0, 0.5f}}};

CShape Turned(const CProfile& profile) {
    return shapes::Lathe(profile, {.segments = 64, .creaseDeg = 180}).Material("CLAY");
}

}  // namespace

void MakeVase(const std::filesystem::path& folder) {
    CSceneBuilder scene(80);
    scene.AddMaterial("CLAY", {.color = {0.62f, 0.33f, 0.21f}, .specular = 0.5f, .shininess = 0.3f});
    scene.AddMaterial("WHEEL",
                      {.color = {0.35f, 0.36f, 0.40f}, .shininess = 0.5f, .shininessStrength = 0.5f});
    Lib3dsNode& wheel = scene.AddPart("WHEEL", shapes::Cylinder(4.2f, 0.4f, 0.08f, 72).Material("WHEEL"),
                                      nullptr, {0, 0, -0.4f});
    scene.Spin(wheel, 2);
    Lib3dsNode& vase = scene.AddPart("LUMP", Turned(kLump), nullptr, {0, 0, 0});
    // Shapes without nodes of their own: they are only what the lump changes into.
    (void)scene.AddMesh("BOWL", Turned(kBowl));
    (void)scene.AddMesh("VASE", Turned(kVase));
    CSceneBuilder::MorphTo(vase, 0, "LUMP");
    CSceneBuilder::MorphTo(vase, 40, "BOWL");
    CSceneBuilder::MorphTo(vase, 80, "VASE");
    scene.File().current_frame = 60;
    scene.Save(folder / "vase.3ds");
}

}  // namespace scenes
