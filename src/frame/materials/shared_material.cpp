// SPDX-License-Identifier: MIT
#include "frame/materials/shared_material.h"

#include <algorithm>
#include <set>

#include "model/prepare/CPreparedScene.h"

namespace {

const CPreparedMesh* MeshOf(const CPreparedScene& scene, const CPreparedNode& node) {
    if (node.kind != ENodeKind::Object || node.mesh < 0) return nullptr;
    return &scene.meshes[static_cast<std::size_t>(node.mesh)];
}

}  // namespace

CMaterialShare ShareOf(const CPreparedScene& scene, std::string_view node) {
    CMaterialShare share;
    std::set<std::uint32_t> asked;
    for (const CPreparedNode& one : scene.nodes) {
        const CPreparedMesh* mesh = one.name == node ? MeshOf(scene, one) : nullptr;
        if (mesh == nullptr) continue;
        for (const CPreparedBatch& batch : mesh->batches) asked.insert(batch.material);
        break;
    }
    for (const CPreparedNode& one : scene.nodes) {
        const CPreparedMesh* mesh = MeshOf(scene, one);
        if (mesh == nullptr) continue;
        const auto isAsked = [&](const CPreparedBatch& batch) { return asked.contains(batch.material); };
        if (std::any_of(mesh->batches.begin(), mesh->batches.end(), isAsked)) share.nodes.push_back(one.name);
    }
    for (const std::uint32_t material : asked) {
        const bool isNone = material + 1 == scene.materials.size();
        share.materials.push_back(isNone ? std::string() : scene.materials[material].name);
    }
    return share;
}
