// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>

#include "base/jobs/CJobProgress.h"
#include "model/prepare/CPreparedScene.h"

class CScene;

struct CPrepareOptions {
    unsigned threads = 0;                            ///< 0: one for each core
    bool loadTextures = true;                        ///< false leaves CPreparedTexture::image empty
    bool outlines = false;                           ///< meshes get all but vertices, indices and batches
    CJobProgress* progress = nullptr;                ///< gets the share of the meshes; cancelled it ends soon
    std::atomic<std::int64_t>* bytesLeft = nullptr;  ///< counted down by what is made; below 0 it ends soon

    /** True when the rest is not wanted any more. */
    [[nodiscard]] bool IsStopped() const {
        return (progress && progress->IsCancelled()) || (bytesLeft && *bytesLeft < 0);
    }
    void Spend(std::size_t bytes) const {
        if (bytesLeft) *bytesLeft -= static_cast<std::int64_t>(bytes);
    }
};

/** Makes the prepared scene: normals by smoothing group, split vertices, batches, materials, textures,
 * hierarchy, evaluated at the file's current frame. Works on all cores; the result does not depend on
 * their number. Cannot fail: whatever a scene holds is repaired by then. Stopped (see the options) it gives
 * a part that is good for nothing but being thrown away. The scene must outlive the result's node sources. */
[[nodiscard]] CPreparedScene PrepareScene(const CScene& scene, const CPrepareOptions& options = {});

/** Evaluates node transforms, visibility, lights, cameras and bounds at a frame (clamped to
 * nothing: tracks decide). */
void EvaluateNodes(CPreparedScene& prepared, const CScene& scene, float frame);
/** Where a node's coordinates lie in the scene at a frame, whatever was evaluated before; the identity for
 * node -1. */
[[nodiscard]] CMat4 WorldOf(const CPreparedScene& prepared, int node, float frame);

/** Finds out whether anything is animated, and between which frames. */
void FindFrames(const CScene& scene, CPreparedScene& prepared);
/** Counts triangles and vertices. */
void CountParts(const CScene& scene, CPreparedScene& prepared);
