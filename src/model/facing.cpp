// SPDX-License-Identifier: MIT
#include "model/facing.h"
#include "platform/lng.h"

#include <algorithm>

namespace {
constexpr std::size_t kMaxSamples = 20'000;

struct CSurface {
    double front = 0, all = 0;
};

void AddBatch(const CPreparedMesh& mesh, const CPreparedBatch& batch, const CPreparedNode& node,
              bool twoSided, CVec3 towardsViewer, std::size_t step, CSurface& surface) {
    for (std::size_t i = batch.firstIndex; i + 2 < batch.firstIndex + batch.indexCount; i += 3 * step) {
        CVec3 p[3];
        for (std::size_t k = 0; k < 3; ++k) {
            p[k] = node.meshToWorld.TransformPoint(
                mesh.vertices[mesh.Index(static_cast<std::uint32_t>(i + k))].Position());
        }
        float seen = Dot(Cross(p[1] - p[0], p[2] - p[0]), towardsViewer);
        if (node.mirrored) seen = -seen;
        surface.all += static_cast<double>(std::abs(seen));
        if (seen > 0 || twoSided) surface.front += static_cast<double>(std::abs(seen));
    }
}
}  // namespace

float FrontShare(const CPreparedScene& scene, CVec3 towardsViewer) {
    const std::size_t step = std::max<std::size_t>(1, scene.triangleCount / kMaxSamples);
    CSurface surface;
    for (const CPreparedNode& node : scene.nodes) {
        if (node.mesh < 0 || !node.visible) continue;
        const CPreparedMesh& mesh = scene.meshes[static_cast<std::size_t>(node.mesh)];
        for (const CPreparedBatch& batch : mesh.batches) {
            const CPreparedMaterial& material = scene.materials[batch.material];
            AddBatch(mesh, batch, node, material.twoSided || material.wire, towardsViewer, step, surface);
        }
    }
    return surface.all > 0 ? static_cast<float>(surface.front / surface.all) : 1.0f;
}

void ShowBothSidesIfTurnedAway(CPreparedScene& scene) {
    constexpr float kNextToNothing = 0.02f;
    constexpr CVec3 kFirstCorner{1, -1, 1};
    if (FrontShare(scene, kFirstCorner) > kNextToNothing) return;
    for (CPreparedMaterial& material : scene.materials) material.twoSided = true;
    scene.notes.push_back(
        {CSceneNote::EKind::Repaired, lng::Mark("All surfaces face away; they are shown from both sides")});
}
