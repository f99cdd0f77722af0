// SPDX-License-Identifier: MIT
#include "model/coarse/scene_kinds.h"

#include <algorithm>
#include <set>
#include <utility>

#include "model/prepare/prepare_materials.h"

namespace {

/** More are not made ready: the scene itself does it when it is drawn. */
constexpr std::size_t kMostKinds = 256;

/** A triangle, without batches. */
CPreparedMesh Triangle(bool hasTexCoords) {
    CPreparedMesh mesh;
    for (const CVec2 p : {CVec2{0, 0}, CVec2{1, 0}, CVec2{0, 1}}) {
        mesh.vertices.push_back({{p.x, p.y, 0}, {0, 0, 32767, 0}});
        mesh.bounds.Add(mesh.vertices.back().Position());
        if (hasTexCoords) mesh.texCoords.push_back(p);
    }
    return mesh;
}

void AddBatch(CPreparedMesh& mesh, std::uint32_t material) {
    mesh.batches.push_back({material, mesh.IndexCount(), 3});
    mesh.indices16.insert(mesh.indices16.end(), {0, 1, 2});
}

bool HasTexCoords(const CPreparedScene& scene, const CPreparedMesh& mesh) {
    return std::any_of(mesh.batches.begin(), mesh.batches.end(), [&](const CPreparedBatch& batch) {
        return UsesTexCoords(scene.materials[batch.material]);
    });
}

/** A white picture, of which a renderer makes the same as of most. */
CPreparedTexture AnyPicture() {
    constexpr int kSide = 4;
    CPreparedTexture texture;
    texture.image = {kSide, kSide, std::vector<std::uint8_t>(std::size_t{kSide} * kSide * 4, 255)};
    return texture;
}

}  // namespace

CPreparedScene KindsOf(const CPreparedScene& scene) {
    CPreparedScene kinds;
    kinds.materials = scene.materials;
    kinds.lights = scene.lights;
    kinds.textures.push_back(AnyPicture());
    for (CPreparedMaterial& material : kinds.materials)
        ForEachMap(material, [](CPreparedMap& map) { map.texture = std::min(map.texture, 0); });
    for (const bool mapped : {false, true}) kinds.meshes.push_back(Triangle(mapped));
    std::set<std::pair<bool, std::uint32_t>> known;
    for (const CPreparedMesh& mesh : scene.meshes) {
        const bool mapped = HasTexCoords(scene, mesh);
        for (const CPreparedBatch& batch : mesh.batches) {
            if (known.size() < kMostKinds && known.emplace(mapped, batch.material).second)
                AddBatch(kinds.meshes[mapped ? 1 : 0], batch.material);
        }
    }
    kinds.nodes.resize(kinds.meshes.size());
    for (std::size_t i = 0; i < kinds.nodes.size(); ++i) kinds.nodes[i].mesh = static_cast<int>(i);
    return kinds;
}
