// SPDX-License-Identifier: MIT
#include <lib3ds/file.h>
#include <lib3ds/light.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>
#include <lib3ds/node.h>
#include <lib3ds/tracks.h>

#include <cstring>
#include <stdexcept>

#include "files/zip_file_util.h"
#include "make_samples/picture_file.h"
#include "make_samples/pictures.h"
#include "make_samples/scenes.h"
#include "scene_builder/CSceneBuilder.h"
#include "scene_builder/shapes.h"

namespace scenes {
namespace {

CShape SmallBall() {
    return shapes::Sphere(1, 8, true);
}

void MakeTriangle(const std::filesystem::path& folder) {
    CSceneBuilder scene;
    CShape shape;
    shape.AddTriangle(shape.AddPoint({0, 0, 0}), shape.AddPoint({4, 0, 0}), shape.AddPoint({0, 0, 3}), 0);
    (void)scene.AddMesh("TRIANGLE", shape);
    scene.Save(folder / "triangle.3ds");
}

void MakeEmpty(const std::filesystem::path& folder) {
    CSceneBuilder scene;
    scene.Save(folder / "empty.3ds");
}

void MakeHierarchy(const std::filesystem::path& folder) {
    CSceneBuilder scene(40);
    scene.AddMaterial("RED", {.color = {0.8f, 0.1f, 0.1f}});
    Lib3dsNode& root = scene.AddDummy("Root", nullptr, {0, 0, 1});
    scene.Spin(root, 1);
    Lib3dsNode& box = scene.AddPart("BOX", shapes::Box({2, 1, 0.5f}).Material("RED"), &root, {2, 0, 0});
    CSceneBuilder::SetPivot(box, {-1, 0, 0});
    scene.Spin(box, -0.5f, 15, {1, 0, 0});
    Lib3dsNode& again = scene.AddObject("BOX", &box, {0, 2, 0}, "again");
    CSceneBuilder::SetScale(again, {0.5f, -1, 2});
    CSceneBuilder::MoveTo(again, 20, {0, 3, 1});
    CSceneBuilder::HideFrom(again, 30);
    (void)scene.AddMesh("MIRROR", shapes::Box({1, 2, 3}).Scale({-1, 1, 1}), true);
    scene.AddObject("MIRROR", &root, {-3, 0, 0});
    scene.AddMovingCamera("Camera", {{{9, 9, 9}, {0, 0, 0}}, {{-9, 9, 9}, {0, 0, 1}}}, 45);
    scene.AddCamera("Rolled", {{0, -12, 3}, {0, 0, 0}}, 30, 25);
    scene.AddSpot("Spot", {{4, 4, 9}, {0, 0, 0}}, {1, 1, 0.8f}, {30, 45});
    scene.AddOmni("Omni", {-5, -5, 5}, {0.5f, 0.5f, 1}, 1.5f);
    scene.Save(folder / "hierarchy.3ds");
}

void SetAllMaps(Lib3dsMaterial& material) {
    Lib3dsTextureMap* const maps[] = {
        &material.texture1_map,   &material.texture1_mask,   &material.texture2_map,
        &material.texture2_mask,  &material.opacity_map,     &material.opacity_mask,
        &material.bump_map,       &material.bump_mask,       &material.specular_map,
        &material.specular_mask,  &material.shininess_map,   &material.shininess_mask,
        &material.self_illum_map, &material.self_illum_mask, &material.reflection_map,
        &material.reflection_mask};
    for (Lib3dsTextureMap* map : maps) {
        CSceneBuilder::SetMap(*map, "CORNERS.PNG", 0.5f, {2, 3});
        map->offset[0] = 0.25f;
        map->offset[1] = -0.5f;
        map->rotation = 45;
        map->blur = 0.1f;
        map->flags = LIB3DS_DECALE | LIB3DS_MIRROR | LIB3DS_TINT;
        map->tint_1[0] = map->tint_2[1] = 1;
    }
    material.autorefl_map = {LIB3DS_USE_REFL_MAP, 2, 128, 3};
}

void MakeMaps(const std::filesystem::path& folder) {
    SavePicture(pictures::Corners(), folder / "corners.png");
    CSceneBuilder scene;
    Lib3dsMaterial& material =
        scene.AddMaterial("ALLMAPS", {.transparency = 0.2f, .selfIllumination = 0.3f, .twoSided = true});
    SetAllMaps(material);
    material.use_wire = material.use_wire_abs = material.face_map = material.soften = material.additive = 1;
    material.use_falloff = material.use_blur = 1;
    material.falloff = material.blur = 0.2f;
    material.shading = LIB3DS_METAL;
    Lib3dsMesh& mesh = scene.AddMesh("BALL", SmallBall().Material("ALLMAPS"));
    mesh.map_data.maptype = LIB3DS_MAP_CYLINDRICAL;
    mesh.map_data.scale = 2;
    mesh.color = 7;
    std::strcpy(mesh.box_map.front, "ALLMAPS");
    lib3ds_mesh_new_flag_list(&mesh, mesh.points);
    scene.AddObject("BALL", nullptr, {1, 2, 3});
    scene.Save(folder / "maps.3ds");
}

void SetAtmosphere(Lib3dsFile& file) {
    file.atmosphere.fog = {1, {0.5f, 0.6f, 0.7f}, 1, 1, 10, 100, 90};
    file.atmosphere.layer_fog = {1, LIB3DS_TOP_FALL_OFF, {0.5f, 0.5f, 0.5f}, 0, 10, 50};
    file.atmosphere.dist_cue = {1, 1, 1, 0, 100, 80};
    file.background.gradient = {1, 50, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    file.background.bitmap.use = 0;
    std::strcpy(file.background.bitmap.name, "CORNERS.PNG");
    file.background.solid = {1, {0.2f, 0.4f, 0.6f}};
}

/** Every kind of track with more than one key, and keys with tension, continuity, bias and ease. */
void BendTracks(Lib3dsNode& node) {
    Lib3dsTcb& tcb = node.data.object.pos_track.keyL->tcb;
    tcb.flags = LIB3DS_USE_TENSION | LIB3DS_USE_CONTINUITY | LIB3DS_USE_BIAS | LIB3DS_USE_EASE_TO |
                LIB3DS_USE_EASE_FROM;
    tcb.tens = 0.5f;
    tcb.cont = -0.5f;
    tcb.bias = 1;
    tcb.ease_to = tcb.ease_from = 0.3f;
    std::strcpy(node.data.object.morph, "BALL");
    Lib3dsMorphKey* key = lib3ds_morph_key_new();
    std::strcpy(key->name, "BALL");
    lib3ds_morph_track_insert(&node.data.object.morph_track, key);
    node.data.object.morph_smooth = 0.5f;
}

void MakeAtmosphere(const std::filesystem::path& folder) {
    CSceneBuilder scene(30);
    SetAtmosphere(scene.File());
    scene.AddMaterial("BLUE", {.color = {0.1f, 0.2f, 0.8f}});
    Lib3dsNode& ball = scene.AddPart("BALL", SmallBall().Material("BLUE"), nullptr, {0, 0, 0});
    CSceneBuilder::MoveTo(ball, 10, {3, 0, 0});
    CSceneBuilder::MoveTo(ball, 30, {3, 3, 0});
    BendTracks(ball);
    scene.AddSpot("Beam", {{0, 0, 9}, {0, 0, 0}}, {1, 1, 1}, {20, 60});
    Lib3dsLight& light = *scene.File().lights;
    light.shadowed = light.rectangular_spot = light.use_projector = light.see_cone = light.ray_shadows =
        light.spot_overshoot = 1;
    std::strcpy(light.projector, "CORNERS.PNG");
    light.attenuation = 1;
    light.inner_range = 5;
    light.outer_range = 50;
    scene.Save(folder / "atmosphere.3ds");
}

void MakeZip(const std::filesystem::path& path, const std::vector<std::string>& files) {
    if (!zip_file_util::WriteZip(path.string(), files))
        throw std::runtime_error("could not write " + path.string());
}

}  // namespace

void MakeSeeds(const std::filesystem::path& folder) {
    const std::filesystem::path scenes = folder / "3ds", archives = folder / "zip";
    std::filesystem::create_directories(scenes);
    std::filesystem::create_directories(archives);
    MakeEmpty(scenes);
    MakeTriangle(scenes);
    MakeHierarchy(scenes);
    MakeMaps(scenes);
    MakeAtmosphere(scenes);
    MakeZip(archives / "one.zip", {(scenes / "triangle.3ds").string()});
    MakeZip(archives / "textured.zip", {(scenes / "maps.3ds").string(), (scenes / "corners.png").string()});
}

}  // namespace scenes
