// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>
#include <vector>

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

/** Where the keys of a node put it, seen from its parent: scaled first, then turned, then moved. */
struct CNodePose {
    CVec3 position;
    std::array<float, 4> turn{0, 0, 0, 1};  ///< a unit quaternion: x, y, z, w
    CVec3 scale{1, 1, 1};
    float rollDeg = 0;  ///< of a camera, where it has keys for it
};
/** For a node that keys place (it is not isPlacedByMesh); all values are finite. */
[[nodiscard]] CNodePose PoseOf(const CPreparedNode& node, float frame);
/** How many keys a node has of each kind (a camera's turns are its roll); with one or none that part of its pose never
 * changes. */
struct CKeyCounts {
    std::size_t position = 0, turn = 0, scale = 0;
};
[[nodiscard]] CKeyCounts KeyCountsOf(const CPreparedNode& node);
/** The frames from which on a node that is shown at first is hidden, shown again, and so on. */
[[nodiscard]] std::vector<float> HideFrames(const CPreparedNode& node);
/** The mesh of a node that morphs, in the shape that it has at a frame. Nothing where its shapes do not fit. */
[[nodiscard]] std::optional<CPreparedMesh> ShapedMesh(const CScene& scene, const CPreparedScene& prepared,
                                                      const CPreparedNode& node, const CMorphShape& shape);
[[nodiscard]] CMorphShape MorphShapeAt(const CPreparedMorph& morph, float frame);

/** Finds out whether anything is animated, and between which frames. */
void FindFrames(const CScene& scene, CPreparedScene& prepared);
/** Counts triangles and vertices. */
void CountParts(const CScene& scene, CPreparedScene& prepared);
