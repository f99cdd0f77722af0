// SPDX-License-Identifier: MIT
#include "model/coarse/coarse_scene.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/jobs/parallel_for.h"
#include "model/coarse/CCoarseMesh.h"
#include "model/coarse/scene_kinds.h"
#include "model/prepare/prepare_scene.h"
#include "model/scene/CScene.h"

namespace {

/** How much of the scene remains: a share that still shows shapes, and no more than is drawn in a trice. */
constexpr float kMostShare = 0.04f, kFaces = 150'000;
/** Above it, what is behind is more of the picture than the surface itself. */
constexpr float kSeenThrough = 0.6f;

/** Takes away what needs pictures, blending or a program of its own: all coarse scenes are drawn by one. Returns which
 * materials are to be left out. */
std::vector<bool> MakePlain(std::vector<CPreparedMaterial>& materials) {
    constexpr float kLeastShine = 1e-6f;
    std::vector<bool> leftOut;
    for (CPreparedMaterial& material : materials) {
        leftOut.push_back(material.transparency > kSeenThrough || material.additive || material.wire);
        material.transparency = 0;
        material.needsBlending = false;
        material.twoSided = true;
        material.shading = EShading::Phong;
        material.shininessStrength = std::max(material.shininessStrength, kLeastShine);
        material.texture = material.texture2 = material.opacity = material.specularMap = {};
        material.shininessMap = material.selfIlluminationMap = material.bump = material.reflection = {};
    }
    return leftOut;
}

/** What is to be drawn of each of the meshes, which are outlines. */
void FillMeshes(const CScene& scene, const std::vector<bool>& leftOut, unsigned threads,
                CPreparedScene& coarse) {
    const auto defaultMaterial = static_cast<std::uint32_t>(coarse.materials.size() - 1);
    const float share = std::min(kMostShare, kFaces / static_cast<float>(FaceCountOf(scene)));
    ParallelFor(coarse.meshes.size(), threads, [&](std::size_t i) {
        CPreparedMesh& mesh = coarse.meshes[i];
        CCoarseMesh(scene.Meshes()[i], mesh.bounds, share, defaultMaterial).Fill(mesh, leftOut);
        // Not among the stamps of meshes that were prepared, which count up from 1.
        mesh.stamp = ~static_cast<std::uint64_t>(i);
    });
}

}  // namespace

std::size_t FaceCountOf(const CScene& scene) {
    std::size_t faces = 0;
    for (const CMeshView& mesh : scene.Meshes()) faces += mesh.faceCount;
    return faces;
}

CCoarseScene MakeCoarseScene(const CScene& scene, unsigned threads) {
    CPrepareOptions options;
    options.threads = threads;
    options.loadTextures = false;
    options.outlines = true;
    CCoarseScene result;
    CPreparedScene& coarse = result.scene = PrepareScene(scene, options);
    std::vector<CPreparedMaterial> materials = coarse.materials;
    const std::vector<bool> leftOut = MakePlain(coarse.materials);
    coarse.textures.clear();
    FillMeshes(scene, leftOut, threads, coarse);
    CountParts(scene, coarse);
    EvaluateNodes(coarse, scene, coarse.currentFrame);  // what is drawn has bounds
    std::swap(materials, coarse.materials);
    result.kinds = KindsOf(coarse);
    std::swap(materials, coarse.materials);
    for (CPreparedLight& light : coarse.lights) light.off = true;
    for (CPreparedNode& node : coarse.nodes) node.source = nullptr;
    coarse.animated = false;
    return result;
}

CPreparedScene UsualKinds() {
    CPreparedScene scene;
    CPreparedMaterial plain;
    plain.shininessStrength = 0.5f;
    CPreparedMaterial pictured = plain, glass = plain;
    pictured.texture.texture = 0;
    glass.transparency = 0.5f;
    glass.needsBlending = true;
    scene.materials = {plain, pictured, glass, plain, pictured};
    for (const std::size_t twoSided : {3u, 4u}) scene.materials[twoSided].twoSided = true;
    scene.meshes.resize(scene.materials.size());
    for (std::uint32_t i = 0; i < scene.meshes.size(); ++i) scene.meshes[i].batches.push_back({i, 0, 0});
    return KindsOf(scene);
}

CPreparedScene CoarseKind() {
    CPreparedScene scene;
    scene.materials.resize(1);
    (void)MakePlain(scene.materials);
    scene.meshes.resize(1);
    scene.meshes[0].batches.push_back({0, 0, 0});
    return KindsOf(scene);
}
