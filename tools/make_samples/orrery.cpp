// SPDX-License-Identifier: MIT
#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <array>
#include <numbers>

#include "make_samples/picture_file.h"
#include "make_samples/pictures.h"
#include "make_samples/scenes.h"
#include "scene_builder/CSceneBuilder.h"
#include "scene_builder/shapes.h"

namespace scenes {
namespace {

constexpr int kFrames = 900;
constexpr float kSunHeight = 23;
constexpr float kShaftDistance = 5;  ///< of the second shaft from the middle
constexpr float kShaftTurns = -4;    ///< of the second shaft while the film runs

/** One planet: its gear pair sets how often it goes round while the second shaft turns four times. */
struct CPlanet {
    const char* name;  ///< also of its material; at most six letters
    float radius;
    float orbit;
    float startDeg;
    int teeth, shaftTeeth;  ///< of the gear on the planet's sleeve, and of its partner
    float spins;            ///< turns about its own axis
    float tiltDeg;
};

constexpr std::array<CPlanet, 6> kPlanets{{
    {"SATURN", 2.1f, 22.5f, 150, 48, 12, 60, -24},
    {"JUPITR", 2.6f, 17.0f, 16, 36, 18, 72, 3},
    {"MARS", 1.0f, 13.6f, 72, 32, 24, 40, 25},
    {"EARTH", 1.35f, 11.4f, 236, 24, 36, 48, 23},
    {"VENUS", 1.15f, 8.2f, 118, 20, 40, -6, 3},
    {"MERCRY", 0.75f, 5.7f, 318, 16, 48, 8, 0},
}};

float GearHeight(std::size_t i) {
    return 5.0f + static_cast<float>(i) * 0.95f;
}
float ArmHeight(std::size_t i) {
    return 12.4f + static_cast<float>(i) * 1.15f;
}
/** Radius of the gear on the sleeve: the two pitch circles touch. */
float SleeveRadius(const CPlanet& planet) {
    return kShaftDistance * static_cast<float>(planet.teeth) /
           static_cast<float>(planet.teeth + planet.shaftTeeth);
}
float OrbitTurns(const CPlanet& planet) {
    return -kShaftTurns * static_cast<float>(planet.shaftTeeth) / static_cast<float>(planet.teeth);
}

void AddMetals(CSceneBuilder& scene) {
    struct CMetal {
        const char* name;
        CVec3 color;
        float shininess, reflection;
    };
    for (const CMetal& metal : {CMetal{"BRASS", {0.50f, 0.33f, 0.12f}, 0.62f, 0.30f},
                                CMetal{"COPPER", {0.46f, 0.20f, 0.11f}, 0.55f, 0.28f},
                                CMetal{"STEEL", {0.26f, 0.28f, 0.31f}, 0.66f, 0.30f}}) {
        Lib3dsMaterial& material = scene.AddMaterial(metal.name, {.color = metal.color,
                                                                  .specular = 0.95f,
                                                                  .shininess = metal.shininess,
                                                                  .shininessStrength = 0.9f});
        CSceneBuilder::SetMap(material.reflection_map, "ROOM.JPG", metal.reflection);
    }
}

void AddMaterials(CSceneBuilder& scene) {
    AddMetals(scene);
    scene.AddMaterial(
        "WOOD",
        {.color = {0.5f, 0.3f, 0.16f}, .shininess = 0.5f, .shininessStrength = 0.5f, .texture = "WOOD.JPG"});
    scene.AddMaterial("TABLE", {.color = {0.4f, 0.28f, 0.18f},
                                .shininess = 0.45f,
                                .shininessStrength = 0.25f,
                                .texture = "TABLE.JPG"});
    scene.AddMaterial(
        "DIAL",
        {.color = {0.7f, 0.7f, 0.7f}, .shininess = 0.7f, .shininessStrength = 0.35f, .texture = "DIAL.PNG"});
    scene.AddMaterial("SUN", {.color = {1, 0.8f, 0.4f},
                              .specular = 0,
                              .shininessStrength = 0,
                              .selfIllumination = 0.55f,
                              .texture = "SUN.JPG"});
    scene.AddMaterial("MOON", {.color = {0.7f, 0.7f, 0.7f},
                               .shininess = 0.1f,
                               .shininessStrength = 0.05f,
                               .texture = "C:\\ORRERY\\MAPS\\MOON.TGA"});
    for (const CPlanet& planet : kPlanets) {
        scene.AddMaterial(planet.name, {.color = {0.75f, 0.75f, 0.75f},
                                        .shininess = 0.35f,
                                        .shininessStrength = 0.25f,
                                        .texture = std::string(planet.name) + ".JPG"});
    }
    Lib3dsMaterial& ring = scene.AddMaterial(
        "RING",
        {.color = {0.8f, 0.72f, 0.55f}, .shininessStrength = 0, .twoSided = true, .texture = "RING.TGA"});
    CSceneBuilder::SetMap(ring.opacity_map, "RINGOPAC.TGA");
    Lib3dsMaterial& glass = scene.AddMaterial("GLASS", {.color = {0.72f, 0.82f, 0.80f},
                                                        .specular = 1,
                                                        .shininess = 0.8f,
                                                        .shininessStrength = 1,
                                                        .transparency = 0.86f,
                                                        .twoSided = true});
    CSceneBuilder::SetMap(glass.reflection_map, "ROOM.JPG", 0.25f);
}

/** On disk in lower case and in a sub-folder, as collections of models have them; the
 * scene says DOS names. */
void SavePictures(const std::filesystem::path& folder) {
    const std::filesystem::path maps = folder / "maps";
    SavePicture(pictures::Sun(), maps / "sun.jpg");
    SavePicture(pictures::RockyPlanet(3, 0.58f, 0.53f, 0.48f, 0.9f), maps / "mercry.jpg");
    SavePicture(pictures::RockyPlanet(5, 0.86f, 0.70f, 0.42f, 0.5f), maps / "venus.jpg");
    SavePicture(pictures::BluePlanet(), maps / "earth.jpg");
    SavePicture(pictures::RockyPlanet(9, 0.72f, 0.35f, 0.20f, 0.9f), maps / "mars.jpg");
    SavePicture(pictures::BandedPlanet(13, false), maps / "Jupitr.JPG");
    SavePicture(pictures::BandedPlanet(17, true), maps / "Saturn.JPG");
    SavePicture(pictures::RockyPlanet(19, 0.66f, 0.66f, 0.64f, 1.0f), maps / "moon.tga");
    SavePicture(pictures::RingColor(), maps / "ring.tga");
    SavePicture(pictures::RingOpacity(), maps / "ringopac.tga");
    SavePicture(pictures::Dial(), maps / "dial.png");
    SavePicture(pictures::TurnedWood(), maps / "wood.jpg");
    SavePicture(pictures::TableTop(), maps / "table.jpg");
    SavePicture(pictures::Room(), maps / "room.jpg");
}

CShape BunFoot() {
    return shapes::Sphere(1.25f, 32).Scale({1, 1, 0.68f}).Material("BRASS");
}

void AddTable(CSceneBuilder& scene, Lib3dsNode* root) {
    constexpr std::array<CVec2, 7> kEdge{
        {{0, -1.6f}, {21.2f, -1.6f}, {21.8f, -1.35f}, {22.0f, -0.8f}, {21.8f, -0.25f}, {21.4f, 0}, {0, 0}}};
    CShape top = shapes::Lathe(kEdge, {.segments = 128});
    scene.AddPart("TABLE", top.MapFlat({-22, -22}, {22, 22}).Material("TABLE"), root, {0, 0, -1.5f});
}

void AddBase(CSceneBuilder& scene, Lib3dsNode* root) {
    constexpr std::array<CVec2, 13> kWood{{{0, 0},
                                           {14.0f, 0},
                                           {14.4f, 0.25f},
                                           {14.5f, 0.7f},
                                           {14.3f, 1.15f},
                                           {13.8f, 1.4f},
                                           {13.3f, 1.5f},
                                           {13.2f, 2.2f},
                                           {13.3f, 2.9f},
                                           {13.8f, 3.1f},
                                           {14.0f, 3.5f},
                                           {13.8f, 3.9f},
                                           {13.4f, 4.0f}}};
    scene.AddPart("BASE", shapes::Lathe(kWood, {.segments = 96, .textured = true}).Material("WOOD"), root,
                  {0, 0, 0});
    constexpr std::array<CVec2, 4> kRim{{{13.4f, 3.95f}, {13.4f, 4.2f}, {13.0f, 4.3f}, {12.85f, 4.05f}}};
    scene.AddPart("RIM", shapes::Lathe(kRim, {.segments = 96}).Material("BRASS"), root, {0, 0, 0});
    CShape dial = shapes::Cylinder(12.95f, 0.1f, 0, 96);
    scene.AddPart("DIAL", dial.MapFlat({-12.95f, -12.95f}, {12.95f, 12.95f}).Material("DIAL"), root,
                  {0, 0, 4.0f});
    (void)scene.AddMesh("FOOT", BunFoot());
    for (int i = 0; i < 4; ++i) {
        const float angle = (static_cast<float>(i) + 0.5f) * std::numbers::pi_v<float> / 2;
        scene.AddObject("FOOT", root, {11.5f * std::cos(angle), 11.5f * std::sin(angle), -0.65f},
                        i == 0 ? "" : "foot" + std::to_string(i + 1));
    }
}

/** The glass wall round the works, and the plate that the arms turn above. */
void AddCase(CSceneBuilder& scene, Lib3dsNode* root) {
    constexpr std::array<CVec2, 2> kWall{{{9.4f, 0}, {9.4f, 6.6f}}};
    scene.AddPart("GLASS", shapes::Lathe(kWall, {.segments = 96}).Material("GLASS"), root, {0, 0, 4.3f});
    CShape hoop = shapes::Torus(9.4f, 0.22f, 96, 16).Material("BRASS");
    scene.AddPart("HOOP", hoop, root, {0, 0, 4.3f});
    scene.AddObject("HOOP", root, {0, 0, 10.9f}, "top");
    CShape plate = shapes::Torus(5.0f, 0.3f, 64, 12);
    for (int i = 0; i < 6; ++i) {
        CShape spoke = shapes::Cylinder(0.22f, 9.2f, 0, 16).Turn(90, {0, 1, 0});
        plate.Add(spoke.Turn(60.0f * static_cast<float>(i) + 30, {0, 0, 1}));
    }
    scene.AddPart("PLATE", plate.Material("BRASS"), root, {0, 0, 10.9f});
    for (int i = 0; i < 6; ++i) {
        const float angle = (60.0f * static_cast<float>(i) + 30) * std::numbers::pi_v<float> / 180;
        const CVec3 at{9.4f * std::cos(angle), 9.4f * std::sin(angle), 4.3f};
        if (i == 0) {
            scene.AddPart("POST", shapes::Cylinder(0.28f, 6.6f, 0, 20).Material("BRASS"), root, at);
        } else {
            scene.AddObject("POST", root, at, "post" + std::to_string(i + 1));
        }
    }
}

void AddColumn(CSceneBuilder& scene, Lib3dsNode* root) {
    constexpr std::array<CVec2, 16> kProfile{{{1.9f, 4.1f},
                                              {1.9f, 4.4f},
                                              {1.2f, 4.7f},
                                              {0.55f, 4.9f},
                                              {0.5f, 11.5f},
                                              {0.5f, 19.0f},
                                              {0.9f, 19.2f},
                                              {0.95f, 19.4f},
                                              {0.6f, 19.6f},
                                              {0.45f, 19.9f},
                                              {0.55f, 20.2f},
                                              {0.8f, 20.4f},
                                              {0.85f, 20.6f},
                                              {0.6f, 20.8f},
                                              {0.5f, 21.0f},
                                              {0, 21.0f}}};
    scene.AddPart("COLUMN", shapes::Lathe(kProfile, {.segments = 40}).Material("BRASS"), root, {0, 0, 0});
    Lib3dsNode& sun =
        scene.AddPart("SUN", shapes::Sphere(2.6f, 64, true).Material("SUN"), root, {0, 0, kSunHeight});
    scene.Spin(sun, 2);
}

/** The second shaft, whose gears drive those on the sleeves. */
void AddShaft(CSceneBuilder& scene, Lib3dsNode* root) {
    CShape shaft = shapes::Cylinder(0.32f, 6.9f, 0.1f, 24).Material("STEEL");
    Lib3dsNode& node = scene.AddPart("SHAFT", shaft, root, {kShaftDistance, 0, 4.1f});
    scene.Spin(node, kShaftTurns);
    for (std::size_t i = 0; i < kPlanets.size(); ++i) {
        const CPlanet& planet = kPlanets[i];
        CShape gear = shapes::Gear({.teeth = planet.shaftTeeth,
                                    .radius = kShaftDistance - SleeveRadius(planet),
                                    .thickness = 0.42f,
                                    .toothDepth = 0.34f,
                                    .rim = 0.3f,
                                    .hubRadius = 0.6f,
                                    .spokes = 5});
        // Half a tooth on, so that a gap meets the tooth of the other gear.
        gear.Turn(180.0f / static_cast<float>(planet.shaftTeeth), {0, 0, 1});
        const std::string name = std::string("P") + planet.name;
        scene.AddPart(name, gear.Material("STEEL"), &node, {0, 0, GearHeight(i) - 4.1f});
    }
}

/** A rod from the sleeve outwards that bends up to the planet; the origin is the planet's place. */
CShape ArmShape(const CPlanet& planet, float height) {
    constexpr float kBend = 1.4f;
    const float drop = height - kSunHeight;
    std::vector<CVec3> path{{-planet.orbit + 0.7f, 0, drop}, {-planet.orbit * 0.5f, 0, drop}};
    for (int i = 0; i <= 8; ++i) {
        const float angle = std::numbers::pi_v<float> / 2 * static_cast<float>(i) / 8;
        path.push_back({-kBend + kBend * std::sin(angle), 0, drop + kBend - kBend * std::cos(angle)});
    }
    path.push_back({0, 0, -planet.radius * 0.9f});
    CShape arm = shapes::Tube(path, 0.2f, 16);
    arm.Add(shapes::Cylinder(0.95f, 0.8f, 0.15f, 40).Move({-planet.orbit, 0, drop - 0.4f}));
    arm.Add(shapes::Sphere(0.34f, 20).Move({0, 0, -planet.radius * 0.9f - 0.25f}));
    return arm.Material("BRASS");
}

void AddMoon(CSceneBuilder& scene, Lib3dsNode& arm, CVec3 at) {
    Lib3dsNode& turning = scene.AddDummy("MoonTurn", &arm, at);
    scene.Spin(turning, 24, 40);
    constexpr std::array<CVec3, 5> kPath{
        {{0, 0, -1.65f}, {1.3f, 0, -1.65f}, {2.1f, 0, -1.5f}, {2.35f, 0, -1.0f}, {2.35f, 0, -0.3f}}};
    scene.AddPart("MOONARM", shapes::Tube(kPath, 0.1f, 12).Material("STEEL"), &turning, {0, 0, 0});
    scene.AddPart("MOON", shapes::Sphere(0.4f, 32, true).Material("MOON"), &turning, {2.35f, 0, 0});
}

void AddPlanet(CSceneBuilder& scene, Lib3dsNode* root, std::size_t i) {
    const CPlanet& planet = kPlanets[i];
    const std::string name = planet.name;
    CShape gear = shapes::Gear({.teeth = planet.teeth,
                                .radius = SleeveRadius(planet),
                                .thickness = 0.42f,
                                .toothDepth = 0.34f,
                                .rim = 0.3f,
                                .hubRadius = 0.75f,
                                .spokes = 6})
                      .Material("COPPER");
    Lib3dsNode& wheel = scene.AddPart("G" + name, gear, root, {0, 0, GearHeight(i)});
    scene.Spin(wheel, OrbitTurns(planet));
    // The arm hangs on its gear, turned to where the planet starts; its pivot is the sleeve, not its origin.
    Lib3dsNode& arm =
        scene.AddPart("A" + name, ArmShape(planet, ArmHeight(i)), &wheel, {0, 0, kSunHeight - GearHeight(i)});
    CSceneBuilder::SetPivot(arm, {-planet.orbit, 0, 0});
    CSceneBuilder::SetTurn(arm, planet.startDeg);
    // A child's place counts from its parent's pivot.
    Lib3dsNode& tilt = scene.AddDummy("T" + name, &arm, {planet.orbit, 0, 0});
    CSceneBuilder::SetTurn(tilt, planet.tiltDeg, {1, 0, 0});
    Lib3dsNode& body =
        scene.AddPart(name, shapes::Sphere(planet.radius, 56, true).Material(name), &tilt, {0, 0, 0});
    scene.Spin(body, planet.spins);
    if (name == "SATURN")
        scene.AddPart("RING", shapes::FlatRing(2.6f, 4.6f).Material("RING"), &tilt, {0, 0, 0});
    if (name == "EARTH") AddMoon(scene, arm, {planet.orbit, 0, 0});
}

void AddLightsAndCameras(CSceneBuilder& scene) {
    scene.AddOmni("Sunlight", {0, 0, kSunHeight}, {1.0f, 0.86f, 0.62f}, 0.45f);
    scene.AddOmni("Fill", {-55, 30, 45}, {0.42f, 0.50f, 0.66f}, 0.45f);
    scene.AddSpot("Lamp", {{38, -46, 62}, {0, 0, 10}}, {1.0f, 0.94f, 0.84f}, {50, 70}, 0.75f);
    scene.AddCamera("Overview", {{26, -50, 34}, {0, 0, 11}}, 52);
    scene.AddCamera("Works", {{13, -19, 17}, {0, 0, 8}}, 48);
    constexpr float kPi = std::numbers::pi_v<float>;
    std::vector<CAim> flight;
    for (int i = 0; i <= 16; ++i) {
        const float angle = 2 * kPi * static_cast<float>(i) / 16;
        flight.push_back(
            {{48 * std::sin(angle), -48 * std::cos(angle), 27 + 9 * std::cos(angle)}, {0, 0, 15}});
    }
    scene.AddMovingCamera("Flight", flight, 50);
}

}  // namespace

void MakeOrrery(const std::filesystem::path& folder) {
    SavePictures(folder);
    CSceneBuilder scene(kFrames);
    scene.File().background.solid = {1, {0.10f, 0.11f, 0.14f}};
    AddMaterials(scene);
    Lib3dsNode& root = scene.AddDummy("Orrery", nullptr, {0, 0, 0});
    AddTable(scene, &root);
    AddBase(scene, &root);
    AddCase(scene, &root);
    AddColumn(scene, &root);
    AddShaft(scene, &root);
    for (std::size_t i = 0; i < kPlanets.size(); ++i) AddPlanet(scene, &root, i);
    AddLightsAndCameras(scene);
    scene.Save(folder / "orrery.3ds");
}

}  // namespace scenes
