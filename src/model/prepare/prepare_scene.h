// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>

#include "base/jobs/CJobProgress.h"
#include "model/prepare/CPreparedScene.h"
#include "model/scene/scene_budget.h"

class CScene;

struct CPrepareOptions {
    unsigned threads = 0;                                      ///< 0: one for each core
    bool loadTextures = true;                                  ///< false leaves CPreparedTexture::image empty
    std::uint64_t pictureBytes = scene_budget::kPictureBytes;  ///< of all decoded pictures together
    bool outlines = false;             ///< meshes get all but vertices, indices and batches
    CJobProgress* progress = nullptr;  ///< gets the share of prepared meshes; cancelling it stops the work
    std::atomic<std::int64_t>* bytesLeft = nullptr;  ///< reduced by what is made; below 0 the work stops

    /** True once the work was cancelled or has used up its bytes. */
    [[nodiscard]] bool IsStopped() const {
        return (progress && progress->IsCancelled()) || (bytesLeft && *bytesLeft < 0);
    }
    void Spend(std::size_t bytes) const {
        if (bytesLeft) *bytesLeft -= static_cast<std::int64_t>(bytes);
    }
};

/** Makes the prepared scene: normals by smoothing group, split vertices, batches, materials, textures,
 * hierarchy, evaluated at the file's current frame. Works on all cores; the result does not depend on their
 * number. Cannot fail, as reading has repaired the scene. When the options stop it, the result is incomplete
 * and must be discarded. The result's nodes refer to the scene, which must outlive it. */
[[nodiscard]] CPreparedScene PrepareScene(const CScene& scene, const CPrepareOptions& options = {});

/** Evaluates node transforms, visibility, lights, cameras and bounds at any frame: it is not clamped, the
 * tracks decide what they give beyond their keys. threads: 0 for one on each core, where it is worth it. */
void EvaluateNodes(CPreparedScene& prepared, const CScene& scene, float frame, unsigned threads = 0);
/** The transform from a node's coordinates to the scene's at a frame, whatever was evaluated before; the
 * identity for node -1. */
[[nodiscard]] CMat4 WorldOf(const CPreparedScene& prepared, int node, float frame);

/** Finds out whether anything is animated, and between which frames. */
void FindFrames(const CScene& scene, CPreparedScene& prepared);
/** Counts triangles and vertices. */
void CountParts(const CScene& scene, CPreparedScene& prepared);
