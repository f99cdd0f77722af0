// SPDX-License-Identifier: MIT
#include "engine/test_scenes.h"

#include <cmath>
#include <numbers>
#include <string>
#include <utility>

namespace test_scenes {

namespace {

void AddVertex(CPreparedMesh& mesh, CVec3 p, CVec3 n, CVec2 uv) {
    const auto fraction = [](float f) { return static_cast<std::int16_t>(std::lround(f * 32767)); };
    mesh.vertices.push_back({{p.x, p.y, p.z}, {fraction(n.x), fraction(n.y), fraction(n.z), 0}});
    mesh.texCoords.push_back(uv);
    mesh.bounds.Add(p);
}

void AddTriangle(CPreparedMesh& mesh, std::uint32_t a, std::uint32_t b, std::uint32_t c) {
    mesh.indices32.insert(mesh.indices32.end(), {a, b, c});
}

/** A square at distance side / 2 along the cross product of the two directions. */
void AddSquare(CPreparedMesh& mesh, CVec3 right, CVec3 up, CVec3 middle, float side) {
    const CVec3 normal = Cross(right, up);
    const auto first = static_cast<std::uint32_t>(mesh.vertices.size());
    for (const CVec2 uv : {CVec2{0, 0}, CVec2{1, 0}, CVec2{1, 1}, CVec2{0, 1}}) {
        AddVertex(mesh, middle + right * ((uv.x - 0.5f) * side) + up * ((uv.y - 0.5f) * side), normal, uv);
    }
    AddTriangle(mesh, first, first + 1, first + 2);
    AddTriangle(mesh, first, first + 2, first + 3);
}

CPreparedMesh Finished(CPreparedMesh mesh) {
    mesh.batches = {{0, 0, static_cast<std::uint32_t>(mesh.indices32.size())}};
    if (mesh.vertices.size() <= 65536) {
        mesh.indices16.assign(mesh.indices32.begin(), mesh.indices32.end());
        mesh.indices32.clear();
        mesh.indices32.shrink_to_fit();
    }
    return mesh;
}

}  // namespace

CPreparedMesh MakePlane(float side) {
    CPreparedMesh mesh;
    AddSquare(mesh, {1, 0, 0}, {0, 1, 0}, {}, side);
    return Finished(std::move(mesh));
}

CPreparedMesh MakeCube(float side) {
    CPreparedMesh mesh;
    const CVec3 x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};
    for (const auto& [right, up] : {std::pair{x, z}, {-x, z}, {y, z}, {-y, z}, {x, y}, {x, -y}})
        AddSquare(mesh, right, up, Cross(right, up) * (side / 2), side);
    return Finished(std::move(mesh));
}

CPreparedMesh MakeSphere(float radius, int rings) {
    CPreparedMesh mesh;
    constexpr float kPi = std::numbers::pi_v<float>;
    const auto columns = static_cast<std::uint32_t>(2 * rings);
    for (int row = 0; row <= rings; ++row) {
        const float v = static_cast<float>(row) / static_cast<float>(rings), up = (v - 0.5f) * kPi;
        for (std::uint32_t column = 0; column <= columns; ++column) {
            const float u = static_cast<float>(column) / static_cast<float>(columns), around = u * 2 * kPi;
            const CVec3 normal{std::cos(up) * std::cos(around), std::cos(up) * std::sin(around),
                               std::sin(up)};
            AddVertex(mesh, normal * radius, normal, {u, v});
            if (row == rings || column == columns) continue;
            const auto a = static_cast<std::uint32_t>(mesh.vertices.size()) - 1, above = a + columns + 1;
            AddTriangle(mesh, a, a + 1, above + 1);
            AddTriangle(mesh, a, above + 1, above);
        }
    }
    return Finished(std::move(mesh));
}

void Append(CPreparedMesh& mesh, const CPreparedMesh& other, std::uint32_t material) {
    const auto base = static_cast<std::uint16_t>(mesh.vertices.size());
    mesh.batches.push_back({material, mesh.IndexCount(), other.IndexCount()});
    for (std::uint16_t i : other.indices16) mesh.indices16.push_back(static_cast<std::uint16_t>(base + i));
    mesh.vertices.insert(mesh.vertices.end(), other.vertices.begin(), other.vertices.end());
    mesh.texCoords.insert(mesh.texCoords.end(), other.texCoords.begin(), other.texCoords.end());
    mesh.bounds.Add(other.bounds);
}

CImage MakeImage(int width, int height, const std::function<std::array<std::uint8_t, 4>(int, int)>& color) {
    CImage image{width, height, {}};
    for (int i = 0; i < width * height; ++i)
        for (const std::uint8_t channel : color(i % width, i / width)) image.rgba.push_back(channel);
    return image;
}

CImage OneColorImage(std::array<std::uint8_t, 4> color) {
    return MakeImage(4, 4, [color](int, int) { return color; });
}

CImage QuarterImage(int side) {
    constexpr std::array<std::uint8_t, 4> kQuarters[2][2] = {{{255, 0, 0, 255}, {0, 255, 0, 255}},
                                                             {{0, 0, 255, 255}, {255, 255, 255, 255}}};
    return MakeImage(side, side, [&](int x, int y) { return kQuarters[y >= side / 2][x >= side / 2]; });
}

CPreparedMaterial Plain(CVec3 color) {
    return {.ambient = color, .diffuse = color};
}

CPreparedLight LightAt(CVec3 position, float multiplier) {
    return {.position = position, .multiplier = multiplier};
}

CBuilder::CBuilder() {
    m_scene.materials.emplace_back();
}

std::uint32_t CBuilder::AddMaterial(CPreparedMaterial material) {
    m_scene.materials.insert(m_scene.materials.end() - 1, std::move(material));
    return static_cast<std::uint32_t>(m_scene.materials.size()) - 2;
}

CPreparedMap CBuilder::AddTexture(CImage image) {
    CPreparedTexture texture;
    texture.reference = texture.foundAt = "picture" + std::to_string(m_scene.textures.size());
    for (std::size_t i = 3; i < image.rgba.size(); i += 4) {
        texture.hasTranslucency = texture.hasTranslucency || image.rgba[i] < 255;
    }
    texture.image = std::move(image);
    m_scene.textures.push_back(std::move(texture));
    CPreparedMap map;
    map.texture = static_cast<int>(m_scene.textures.size()) - 1;
    return map;
}

std::uint32_t CBuilder::Add(CPreparedMesh mesh, const CPreparedMaterial& material, const CMat4& place) {
    const std::uint32_t number = AddMaterial(material);
    for (CPreparedBatch& batch : mesh.batches) batch.material = number;
    return AddNode(AddMesh(std::move(mesh)), place);
}

int CBuilder::AddMesh(CPreparedMesh mesh) {
    m_scene.meshes.push_back(std::move(mesh));
    return static_cast<int>(m_scene.meshes.size()) - 1;
}

std::uint32_t CBuilder::AddNode(int mesh, const CMat4& place) {
    CPreparedNode node;
    node.name = "node" + std::to_string(m_scene.nodes.size());
    node.mesh = mesh;
    node.meshToWorld = place;
    node.mirrored = place.Determinant3() < 0;
    const CPreparedMesh& shape = m_scene.meshes[static_cast<std::size_t>(mesh)];
    node.worldBounds = shape.bounds.Transformed(place);
    m_scene.bounds.Add(node.worldBounds);
    m_scene.triangleCount += shape.IndexCount() / 3;
    m_scene.nodes.push_back(std::move(node));
    return static_cast<std::uint32_t>(m_scene.nodes.size()) - 1;
}

}  // namespace test_scenes
