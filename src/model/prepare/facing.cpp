// SPDX-License-Identifier: MIT
#include "model/prepare/facing.h"
#include "base/text/lng.h"

#include <algorithm>
#include <random>

namespace {
constexpr std::size_t kMaxSamples = 20'000;

struct CSurface {
    double front = 0, all = 0;
};

/** Picks triangles of one batch after the other. At random, as every n-th one of many boxes would show the
 * same sides of all. */
class CSampler {
  public:
    explicit CSampler(std::size_t triangleCount)
        : m_step(std::max<std::size_t>(1, triangleCount / kMaxSamples)) {}

    template <class Visit>
    void VisitSome(std::size_t triangles, Visit visit) {
        for (; m_next < triangles; m_next += 1 + m_random() % (2 * m_step - 1)) visit(m_next);
        m_next -= triangles;
    }

  private:
    std::size_t m_step;
    std::size_t m_next = 0;
    std::minstd_rand m_random;
};

void AddBatch(const CPreparedMesh& mesh, const CPreparedBatch& batch, const CPreparedNode& node,
              bool twoSided, CVec3 towardsViewer, CSampler& sampler, CSurface& surface) {
    sampler.VisitSome(batch.indexCount / 3, [&](std::size_t triangle) {
        const std::size_t i = batch.firstIndex + triangle * 3;
        CVec3 p[3];
        for (std::size_t k = 0; k < 3; ++k) {
            p[k] = node.meshToWorld.TransformPoint(
                mesh.vertices[mesh.Index(static_cast<std::uint32_t>(i + k))].Position());
        }
        float seen = Dot(Cross(p[1] - p[0], p[2] - p[0]), towardsViewer);
        if (node.mirrored) seen = -seen;
        surface.all += static_cast<double>(std::abs(seen));
        if (seen > 0 || twoSided) surface.front += static_cast<double>(std::abs(seen));
    });
}
}  // namespace

float FrontShare(const CPreparedScene& scene, CVec3 towardsViewer) {
    CSampler sampler(scene.triangleCount);
    CSurface surface;
    for (const CPreparedNode& node : scene.nodes) {
        if (node.mesh < 0 || !node.visible) continue;
        const CPreparedMesh& mesh = scene.meshes[static_cast<std::size_t>(node.mesh)];
        for (const CPreparedBatch& batch : mesh.batches) {
            const CPreparedMaterial& material = scene.materials[batch.material];
            AddBatch(mesh, batch, node, material.twoSided || material.wire, towardsViewer, sampler, surface);
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
