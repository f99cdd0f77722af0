// SPDX-License-Identifier: MIT
#include "model/coarse/coarse_scene.h"

#include <algorithm>

#include "base/jobs/parallel_for.h"
#include "model/coarse/CCoarseMesh.h"
#include "model/prepare/facing.h"
#include "model/prepare/prepare_scene.h"
#include "model/scene/CScene.h"

namespace {

/** How much of the scene remains: a share that still shows shapes, and no more than is drawn in a trice. */
constexpr float kMostShare = 0.04f, kFaces = 150'000;
/** Above it, what is behind is more of the picture than the surface itself. */
constexpr float kSeenThrough = 0.6f;

/** Takes away what needs pictures or blending. Returns which materials are to be left out. */
std::vector<bool> MakePlain(std::vector<CPreparedMaterial>& materials) {
    std::vector<bool> leftOut;
    for (CPreparedMaterial& material : materials) {
        leftOut.push_back(material.transparency > kSeenThrough || material.additive || material.wire);
        material.transparency = 0;
        material.needsBlending = false;
        material.texture = material.texture2 = material.opacity = material.specularMap = {};
        material.shininessMap = material.selfIlluminationMap = material.bump = material.reflection = {};
    }
    return leftOut;
}

}  // namespace

std::size_t FaceCountOf(const CScene& scene) {
    std::size_t faces = 0;
    for (const CMeshView& mesh : scene.Meshes()) faces += mesh.faceCount;
    return faces;
}

CPreparedScene MakeCoarseScene(const CScene& scene, unsigned threads) {
    CPrepareOptions options;
    options.threads = threads;
    options.loadTextures = false;
    options.outlines = true;
    CPreparedScene coarse = PrepareScene(scene, options);
    const std::vector<bool> leftOut = MakePlain(coarse.materials);
    coarse.textures.clear();
    const auto defaultMaterial = static_cast<std::uint32_t>(coarse.materials.size() - 1);
    const float share = std::min(kMostShare, kFaces / static_cast<float>(FaceCountOf(scene)));
    ParallelFor(coarse.meshes.size(), threads, [&](std::size_t i) {
        CPreparedMesh& mesh = coarse.meshes[i];
        CCoarseMesh(scene.Meshes()[i], mesh.bounds, share, defaultMaterial).Fill(mesh, leftOut);
        // Not among the stamps of meshes that were prepared, which count up from 1.
        mesh.stamp = ~static_cast<std::uint64_t>(i);
    });
    CountParts(scene, coarse);
    EvaluateNodes(coarse, scene, coarse.currentFrame);  // what is drawn has bounds
    ShowBothSidesIfTurnedAway(coarse);
    for (CPreparedNode& node : coarse.nodes) node.source = nullptr;
    coarse.animated = false;
    return coarse;
}
