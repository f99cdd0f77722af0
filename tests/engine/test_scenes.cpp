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

/** A grid over (u, v) in 0..1 with the point and normal of each. */
CPreparedMesh MakeGrid(int columns, int rows,
                       const std::function<std::pair<CVec3, CVec3>(float u, float v)>& shape) {
    CPreparedMesh mesh;
    for (int row = 0; row <= rows; ++row) {
        for (int column = 0; column <= columns; ++column) {
            const float u = static_cast<float>(column) / static_cast<float>(columns);
            const float v = static_cast<float>(row) / static_cast<float>(rows);
            const auto [point, normal] = shape(u, v);
            AddVertex(mesh, point, normal, {u, v});
        }
    }
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const auto a = static_cast<std::uint32_t>(row * (columns + 1) + column);
            const std::uint32_t above = a + static_cast<std::uint32_t>(columns) + 1;
            AddTriangle(mesh, a, a + 1, above + 1);
            AddTriangle(mesh, a, above + 1, above);
        }
    }
    return mesh;
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

constexpr float kTurn = 2 * std::numbers::pi_v<float>;

}  // namespace

CPreparedMesh MakePlane(float side) {
    CPreparedMesh mesh;
    AddSquare(mesh, {1, 0, 0}, {0, 1, 0}, {}, side);
    return Finished(std::move(mesh));
}

CPreparedMesh MakeCube(float side) {
    CPreparedMesh mesh;
    const std::array<std::pair<CVec3, CVec3>, 6> faces{{{{1, 0, 0}, {0, 0, 1}},
                                                        {{-1, 0, 0}, {0, 0, 1}},
                                                        {{0, 1, 0}, {0, 0, 1}},
                                                        {{0, -1, 0}, {0, 0, 1}},
                                                        {{1, 0, 0}, {0, 1, 0}},
                                                        {{1, 0, 0}, {0, -1, 0}}}};
    for (const auto& [right, up] : faces) AddSquare(mesh, right, up, Cross(right, up) * (side / 2), side);
    return Finished(std::move(mesh));
}

CPreparedMesh MakeSphere(float radius, int rings) {
    return Finished(MakeGrid(2 * rings, rings, [&](float u, float v) {
        const float around = u * kTurn, up = (v - 0.5f) * kTurn / 2;
        const CVec3 normal{std::cos(up) * std::cos(around), std::cos(up) * std::sin(around), std::sin(up)};
        return std::pair{normal * radius, normal};
    }));
}

CPreparedMesh MakeTorus(int triangles) {
    const int side = static_cast<int>(std::sqrt(static_cast<float>(triangles) / 2));
    return Finished(MakeGrid(side, side, [](float u, float v) {
        const float around = u * kTurn, tube = v * kTurn;
        const CVec3 normal{std::cos(tube) * std::cos(around), std::cos(tube) * std::sin(around),
                           std::sin(tube)};
        const float radius = 4 + 0.25f * std::sin(9 * around) * std::cos(7 * tube);
        return std::pair{CVec3{11 * std::cos(around), 11 * std::sin(around), 0} + normal * radius, normal};
    }));
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
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (std::uint8_t channel : color(x, y)) image.rgba.push_back(channel);
        }
    }
    return image;
}

CImage QuarterImage(int side) {
    return MakeImage(side, side, [side](int x, int y) -> std::array<std::uint8_t, 4> {
        const bool right = x >= side / 2, bottom = y >= side / 2;
        if (!bottom)
            return right ? std::array<std::uint8_t, 4>{0, 255, 0, 255}
                         : std::array<std::uint8_t, 4>{255, 0, 0, 255};
        return right ? std::array<std::uint8_t, 4>{255, 255, 255, 255}
                     : std::array<std::uint8_t, 4>{0, 0, 255, 255};
    });
}

CImage HalvesImage(int side) {
    return MakeImage(side, side, [side](int x, int) -> std::array<std::uint8_t, 4> {
        const std::uint8_t grey = x < side / 2 ? 0 : 255;
        return {grey, grey, grey, 255};
    });
}

CPreparedMaterial Plain(CVec3 color) {
    CPreparedMaterial material;
    material.diffuse = material.ambient = color;
    return material;
}

CPreparedLight LightAt(CVec3 position, float multiplier) {
    CPreparedLight light;
    light.position = position;
    light.multiplier = multiplier;
    return light;
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

int CBuilder::AddMesh(CPreparedMesh mesh) {
    m_scene.meshes.push_back(std::move(mesh));
    return static_cast<int>(m_scene.meshes.size()) - 1;
}

std::uint32_t CBuilder::Add(CPreparedMesh mesh, const CPreparedMaterial& material, const CMat4& place) {
    const std::uint32_t number = AddMaterial(material);
    for (CPreparedBatch& batch : mesh.batches) batch.material = number;
    return AddNode(AddMesh(std::move(mesh)), place);
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
