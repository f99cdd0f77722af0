// SPDX-License-Identifier: MIT
#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <algorithm>
#include <functional>

#include "make_samples/picture_file.h"
#include "make_samples/pictures.h"
#include "make_samples/scenes.h"
#include "scene_builder/CSceneBuilder.h"
#include "scene_builder/shapes.h"

namespace scenes {
namespace {

constexpr CVec3 kClay{0.62f, 0.36f, 0.24f};

/** One ball of the shelf: what its material differs in from plain clay. */
struct CBall {
    const char* name;
    std::function<void(Lib3dsMaterial&)> change;
    const char* texture = "";
};

const std::vector<std::vector<CBall>>& Rows() {
    using M = Lib3dsMaterial;
    static const std::vector<std::vector<CBall>> kRows{
        {{"MATT", [](M& m) { m.shin_strength = 0; }},
         {"SHINE20", [](M& m) { m.shininess = 0.2f; }},
         {"SHINE40", [](M& m) { m.shininess = 0.4f; }},
         {"SHINE60", [](M& m) { m.shininess = 0.6f; }},
         {"SHINE80", [](M& m) { m.shininess = 0.8f; }},
         {"GLOW",
          [](M& m) {
              m.self_ilpct = 0.7f;
              m.self_illum = 1;
          }}},
        {{"FLAT", [](M& m) { m.shading = LIB3DS_FLAT; }},
         {"GOURAUD", [](M& m) { m.shading = LIB3DS_GOURAUD; }},
         {"METAL",
          [](M& m) {
              m.shading = LIB3DS_METAL;
              m.shininess = 0.6f;
          }},
         {"WIRE",
          [](M& m) {
              m.use_wire = 1;
              m.wire_size = 1.5f;
              m.two_sided = 1;
          }},
         {"CHROME",
          [](M& m) {
              std::fill_n(m.diffuse, 3, 0.12f);
              std::fill_n(m.ambient, 3, 0.12f);
              CSceneBuilder::SetMap(m.reflection_map, "ROOM.JPG", 0.9f);
          }},
         {"SHEEN",
          [](M& m) {
              CSceneBuilder::SetMap(m.specular_map, "CHECKER.PNG", 1, {8, 4});
              m.shininess = 0.3f;
              m.shin_strength = 1;
          }}},
        {{"CLEAR25", [](M& m) { m.transparency = 0.25f; }},
         {"CLEAR50", [](M& m) { m.transparency = 0.5f; }},
         {"CLEAR75",
          [](M& m) {
              m.transparency = 0.75f;
              m.two_sided = 1;
          }},
         {"ADDITIVE",
          [](M& m) {
              m.transparency = 0.5f;
              m.additive = 1;
          }},
         {"LATTICE",
          [](M& m) {
              CSceneBuilder::SetMap(m.opacity_map, "LATTICE.PNG", 1, {3, 2});
              m.two_sided = 1;
          }},
         {"LANTERN",
          [](M& m) {
              CSceneBuilder::SetMap(m.self_illum_map, "LATTICE.PNG", 1, {3, 2});
          }}},
        {{"TILED",
          [](M& m) {
              CSceneBuilder::SetMap(m.texture1_map, "CORNERS.PNG", 1, {4, 2});
          }},
         {"MIRRORED",
          [](M& m) {
              CSceneBuilder::SetMap(m.texture1_map, "CORNERS.PNG", 1, {4, 2});
              m.texture1_map.flags = LIB3DS_MIRROR;
          }},
         {"DECAL",
          [](M& m) {
              CSceneBuilder::SetMap(m.texture1_map, "CORNERS.PNG", 1, {3, 1});
              m.texture1_map.flags = LIB3DS_NO_TILE;
          }},
         {"TURNED",
          [](M& m) {
              CSceneBuilder::SetMap(m.texture1_map, "CORNERS.PNG", 1, {4, 2});
              m.texture1_map.rotation = 30;
          }},
         {"BUMPY",
          [](M& m) {
              CSceneBuilder::SetMap(m.texture1_map, "BRICKS.JPG", 1, {2, 1});
              CSceneBuilder::SetMap(m.bump_map, "BRICKBMP.JPG", 0.8f, {2, 1});
          }},
         {"TWOMAPS",
          [](M& m) {
              CSceneBuilder::SetMap(m.texture1_map, "MARBLE.JPG", 1, {2, 1});
              CSceneBuilder::SetMap(m.texture2_map, "LATTICE.PNG", 0.4f, {3, 2});
          }}},
    };
    return kRows;
}

void SavePictures(const std::filesystem::path& folder) {
    SavePicture(pictures::Checker(8), folder / "Checker.png");
    SavePicture(pictures::Lattice(), folder / "lattice.png");
    SavePicture(pictures::Corners(), folder / "CORNERS.PNG");
    SavePicture(pictures::Bricks(), folder / "bricks.jpg");
    SavePicture(pictures::BrickHeights(), folder / "brickbmp.jpg");
    SavePicture(pictures::Marble(false), folder / "marble.jpg");
    SavePicture(pictures::Room(), folder / "maps" / "room.jpg");
}

void AddRoom(CSceneBuilder& scene) {
    Lib3dsMaterial& floor =
        scene.AddMaterial("FLOOR", {.color = {0.5f, 0.5f, 0.5f}, .shininessStrength = 0.1f});
    CSceneBuilder::SetMap(floor.texture1_map, "CHECKER.PNG", 1, {2, 2});
    scene.AddMaterial("SHELF", {.color = {0.42f, 0.43f, 0.45f}, .shininessStrength = 0.15f});
    scene.AddPart("FLOOR", shapes::Box({26, 20, 0.4f}).Material("FLOOR"), nullptr, {0, 0, -0.2f});
    for (int row = 0; row < 4; ++row) {
        const auto r = static_cast<float>(row);
        CShape step = shapes::Box({16, 2.4f, 0.2f + r * 1.4f}).Material("SHELF");
        scene.AddPart("STEP" + std::to_string(row + 1), step, nullptr,
                      {0, -3.6f + 2.4f * r, 0.1f + r * 0.7f});
    }
}

}  // namespace

void MakeMaterials(const std::filesystem::path& folder) {
    SavePictures(folder);
    CSceneBuilder scene;
    scene.File().background.solid = {1, {0.22f, 0.24f, 0.27f}};
    AddRoom(scene);
    for (std::size_t row = 0; row < Rows().size(); ++row) {
        for (std::size_t i = 0; i < Rows()[row].size(); ++i) {
            const CBall& ball = Rows()[row][i];
            Lib3dsMaterial& material =
                scene.AddMaterial(ball.name, {.color = kClay, .specular = 0.9f, .shininessStrength = 0.8f});
            ball.change(material);
            const CVec3 place{-6.5f + 2.6f * static_cast<float>(i), -3.6f + 2.4f * static_cast<float>(row),
                              1.2f + 1.4f * static_cast<float>(row)};
            // The first map of each ball faces the camera.
            CSceneBuilder::SetTurn(
                scene.AddPart(ball.name, shapes::Sphere(1.0f, 48, true).Material(ball.name), nullptr, place),
                210);
        }
    }
    scene.AddSpot("Key", {{-14, -22, 24}, {0, 0, 2}}, {1.0f, 0.96f, 0.90f}, {60, 85}, 0.8f);
    scene.AddOmni("Fill", {26, -18, 12}, {0.35f, 0.40f, 0.50f}, 0.7f);
    scene.AddCamera("Front", {{0, -24, 13}, {0, 0.5f, 2.6f}}, 42);
    scene.Save(folder / "materials.3ds");
}

}  // namespace scenes
