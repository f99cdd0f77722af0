// SPDX-License-Identifier: MIT
#include "scene_builder/large_scene.h"

#include <lib3ds/material.h>

#include <cmath>
#include <numbers>

#include "scene_builder/CSceneBuilder.h"

namespace {

constexpr int kMaterials = 20;
constexpr int kFullSide = 181;  // 32,761 points and 64,800 triangles
constexpr float kSpacing = 40;
constexpr long kFullTriangles = 2L * (kFullSide - 1) * (kFullSide - 1);

std::string Numbered(const char* stem, long number) {
    std::string digits = std::to_string(number);
    if (digits.size() < 4) digits.insert(0, 4 - digits.size(), '0');
    return stem + digits;
}

void AddMaterials(CSceneBuilder& scene, const std::string& texture) {
    for (int i = 0; i < kMaterials; ++i) {
        const auto part = [](int value, int of) {
            return static_cast<float>(value) / static_cast<float>(of);
        };
        CMaterialValues values;
        values.color = {0.2f + 0.8f * part(i % 5, 4), 0.2f + 0.8f * part(i / 5 % 4, 3),
                        0.2f + 0.8f * part(i * 7 % kMaterials, kMaterials)};
        values.transparency = i == 7 || i == 13 ? 0.5f : 0;
        values.twoSided = i == 4 || i == 11;
        Lib3dsMaterial& material = scene.AddMaterial(Numbered("MAT", i), values);
        const float repeats = 1 + static_cast<float>(i / 3);
        if (i % 3 == 0 && i < 18)
            CSceneBuilder::SetMap(material.texture1_map, texture, 1, {repeats, repeats});
    }
}

/** A patch of side x side points of which the first `triangles` triangles are kept. */
CShape Patch(long number, int side, long triangles) {
    constexpr float kTurn = 2 * std::numbers::pi_v<float>;
    CShape shape;
    for (int i = 0; i < kMaterials; ++i) shape.materials.push_back(Numbered("MAT", i));
    for (int i = 0; i < side * side; ++i) {
        const float u = static_cast<float>(i / side) / static_cast<float>(side - 1),
                    v = static_cast<float>(i % side) / static_cast<float>(side - 1);
        const float tube =
            4 + 0.25f * std::sin(9 * u * kTurn + static_cast<float>(number)) * std::cos(7 * v * kTurn);
        const float out = 11 + tube * std::cos(v * kTurn);
        shape.AddPoint({out * std::cos(u * kTurn), out * std::sin(u * kTurn), tube * std::sin(v * kTurn)},
                       {4 * u, 2 * v});
    }
    const auto width = static_cast<std::uint32_t>(side);
    for (std::uint32_t row = 0; row + 1 < width; ++row) {
        const std::uint32_t group = 1u << (row * 8 / (width - 1));
        const auto material = static_cast<std::uint16_t>(
            (static_cast<long>(row * kMaterials / (width - 1)) + number) % kMaterials);
        for (std::uint32_t a = row * width; a + 1 < (row + 1) * width; ++a) {
            shape.AddQuad(a, a + width, a + width + 1, a + 1, group);
            for (std::size_t k = shape.triangles.size() - 2; k < shape.triangles.size(); ++k)
                shape.triangles[k].material = material;
        }
    }
    shape.triangles.resize(std::min(shape.triangles.size(), static_cast<std::size_t>(triangles)));
    return shape;
}

int SideFor(long triangles) {
    if (triangles >= kFullTriangles) return kFullSide;
    return std::max(2, 1 + static_cast<int>(std::ceil(std::sqrt(static_cast<double>(triangles) / 2))));
}

Lib3dsNode& AddGroup(CSceneBuilder& scene, Lib3dsNode& root, long number) {
    Lib3dsNode& group = scene.AddDummy(Numbered("Group", number), &root, {0, 0, 0});
    CSceneBuilder::MoveTo(group, 50, {0, 0, 6});
    CSceneBuilder::MoveTo(group, 100, {0, 0, 0});
    scene.Spin(group, 1.0f / 16);
    return group;
}

long AddPatches(CSceneBuilder& scene, long wanted) {
    Lib3dsNode& root = scene.AddDummy("Root", nullptr, {0, 0, 0});
    Lib3dsNode* group = nullptr;
    const long columns = std::max(
        1L,
        std::lround(std::ceil(std::sqrt(static_cast<double>(wanted) / static_cast<double>(kFullTriangles)))));
    long number = 0;
    for (long left = wanted; left > 0; ++number) {
        const CShape shape = Patch(number, SideFor(left), left);
        left -= static_cast<long>(shape.triangles.size());
        const CVec3 place{kSpacing * static_cast<float>(number % columns),
                          kSpacing * static_cast<float>(number / columns), 0};
        if (number % 8 == 0) group = &AddGroup(scene, root, number / 8);
        const std::string name = Numbered("MESH", number);
        CSceneBuilder::SetPivot(scene.AddPart(name, shape, group, place), {0, 0, 1});
        if (number % 10 == 0) scene.AddObject(name, group, place + CVec3{0, 0, 30}, "again");
    }
    return columns;
}

}  // namespace

void MakeLargeScene(long triangles, const std::filesystem::path& path, const std::string& texture) {
    CSceneBuilder scene(100);
    AddMaterials(scene, texture);
    const float extent = kSpacing * static_cast<float>(AddPatches(scene, triangles));
    scene.AddCamera("Camera01", {{extent / 2, -extent, extent}, {extent / 2, extent / 2, 0}}, 45);
    scene.AddOmni("Omni01", {-extent, -extent, 2 * extent}, {0.8f, 0.8f, 0.8f});
    scene.AddSpot("Spot01", {{0, 0, 2 * extent}, {extent / 2, extent / 2, 0}}, {0.6f, 0.6f, 0.4f}, {30, 45});
    scene.Save(path);
}
