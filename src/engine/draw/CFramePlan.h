// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "engine/plan/CScreenScale.h"

class CEqualMeshes;
class CSceneMeshes;
class CTextureSet;
struct CAllowedCost;
struct CFrameView;
struct CPreparedScene;

/** What of one node a drawing shows. */
struct CNodePlan {
    bool shown = false;
    bool repeated = false;  ///< another node shows the same: opaque parts are left out
    bool dimmed = false;    ///< see CDrawOptions::dimmed
    int level = 0;          ///< see CShape.h
    CNodeOnScreen screen;   ///< only set for software
};

/** What one drawing of the view shows of each node, and how coarsely. */
struct CFramePlan {
    /** Triangles of at most this many pixels may be lit by vertex: at rest nobody can tell. */
    static constexpr float kFineGrain = 2;
    /** The same in a moving picture that is coarse anyway. */
    static constexpr float kCoarseGrain = 32;

    std::vector<CNodePlan> nodes;
    bool eachBatch = false;  ///< a box for each batch of a node, not only for its largest
    bool moving = false;
    /** The opaque parts of large nodes first, where the clock may end the drawing. Otherwise the order is always the same, as
     * of surfaces in one place the first one shows. */
    bool largeFirst = false;
    bool whole = true;       ///< all in full
    float grainPixels = -1;  ///< what has a finer grain is lit by vertex; below 0 nothing
    double cost = 0;         ///< see CFrameBudget; only of a moving frame

    /** All that is in the view, in full. software: measures the nodes on the screen. */
    [[nodiscard]] static CFramePlan InFull(const CPreparedScene& scene, const CFrameView& view,
                                           const CSceneMeshes& meshes, const CEqualMeshes& equal,
                                           bool software);
    /** How a plan in full is to be drawn, see CPixelWork::ReductionFor. textures: those that the drawing uses. Takes
     * samples only of meshes that might make the picture too slow. */
    [[nodiscard]] int ReductionFor(const CPreparedScene& scene, const CFrameView& view, CSceneMeshes& meshes,
                                   const CTextureSet& textures) const;
    /** Everything as boxes, also what is hidden or outside of the view; grainPixels above 0: all lit by vertex. */
    [[nodiscard]] static CFramePlan InBoxes(const CPreparedScene& scene, const CSceneMeshes& meshes,
                                            float grainPixels);
    /** Dims the nodes that are marked. The others are never left out for a node that repeats them. */
    void Dim(const std::vector<bool>& dimmed);
    /** Makes a plan in full one that costs at most so much. allowedError: see ChooseLevels. */
    void FitTo(const CPreparedScene& scene, const CSceneMeshes& meshes, const CAllowedCost& allowed,
               float& allowedError);
};
