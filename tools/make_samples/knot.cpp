// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <numbers>

#include "make_samples/picture_file.h"
#include "make_samples/pictures.h"
#include "make_samples/scenes.h"
#include "scene_builder/CSceneBuilder.h"
#include "scene_builder/shapes.h"

namespace scenes {
namespace {

/** A trefoil. */
std::vector<CVec3> KnotPath(int steps, float size) {
    std::vector<CVec3> path;
    for (int i = 0; i < steps; ++i) {
        const float t = 2 * std::numbers::pi_v<float> * static_cast<float>(i) / static_cast<float>(steps);
        path.push_back(CVec3{std::sin(t) + 2 * std::sin(2 * t), -std::sin(3 * t) * 0.9f,
                             std::cos(t) - 2 * std::cos(2 * t)} *
                       size);
    }
    return path;
}

}  // namespace

void MakeKnot(const std::filesystem::path& folder) {
    SavePicture(pictures::Marble(false), folder / "marble.jpg");
    CSceneBuilder scene;
    scene.AddMaterial(
        "BRONZE",
        {.color = {0.50f, 0.34f, 0.16f}, .specular = 0.95f, .shininess = 0.6f, .shininessStrength = 0.9f});
    scene.AddMaterial(
        "PLINTH",
        {.color = {0.8f, 0.8f, 0.8f}, .shininess = 0.5f, .shininessStrength = 0.3f, .texture = "MARBLE.JPG"});
    constexpr std::array<CVec2, 9> kPlinth{{{0, 0},
                                            {3.2f, 0},
                                            {3.2f, 0.6f},
                                            {2.9f, 0.8f},
                                            {2.5f, 1.0f},
                                            {2.4f, 1.4f},
                                            {2.4f, 4.2f},
                                            {2.8f, 4.6f},
                                            {2.8f, 5.0f}}};
    // Points where they are seen, and no nodes at all: the scene of a program without a keyframer.
    CShape top =
        shapes::Cylinder(2.8f, 0.02f, 0, 72).MapFlat({-2.8f, -2.8f}, {2.8f, 2.8f}).Move({0, 0, 4.98f});
    CShape plinth = shapes::Lathe(kPlinth, {.segments = 72, .textured = true});
    (void)scene.AddMesh("PLINTH", plinth.Add(top).Material("PLINTH"));
    (void)scene.AddMesh(
        "KNOT", shapes::Tube(KnotPath(260, 1.15f), 0.62f, 28, true).Move({0, 0, 9.3f}).Material("BRONZE"));
    scene.Save(folder / "knot.3ds");
}

}  // namespace scenes
