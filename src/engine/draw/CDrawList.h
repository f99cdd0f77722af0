// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "engine/pipeline/shader_source.h"

class CGlCurrent;
class CDrawPipeline;
class CSceneMeshes;
class CSortedBatches;
struct CFramePlan;
struct CFrameView;
struct CPreparedScene;

/** One batch of one node to draw. */
struct CDrawItem {
    std::uint32_t node = 0, batch = 0, material = 0;
    std::uint32_t key = 0;  ///< CDrawPipeline::SortKey
    float depth = 0;        ///< depth of the batch's middle; larger is farther
    bool sorted = false;    ///< its indices are in the CSortedBatches
    CSurfaceUse use;
    int level = 0;     ///< see CShape.h
    int rank = 0;      ///< of a moving frame: the larger the node on the screen, the lower
    float pixels = 0;  ///< that it covers, hidden ones too, about; 0 where nobody asks
    std::uint32_t firstIndex = 0, indexCount = 0;  ///< within its shape
};

/** What one drawing of the view draws, in this order, without nodes that are hidden or outside the view and
 * without invisible materials. A batch that only its pictures make transparent is in both lists, once for its
 * solid and once for its translucent pixels. This includes pictures whose alpha is only 0 or 255: filtering
 * creates values between at every edge, and a distant fence or leaf consists of such pixels alone. */
struct CDrawList {
    std::vector<CDrawItem> opaque;       ///< by rank, then grouped by program and material, near ones first
    std::vector<CDrawItem> transparent;  ///< far ones first
    // The same of nodes that are dimmed; they are drawn after the others.
    std::vector<CDrawItem> dimmedOpaque, dimmedTransparent;

    /** Of all items. */
    [[nodiscard]] double Triangles() const;
    [[nodiscard]] static CDrawList Build(CGlCurrent& gl, const CPreparedScene& scene, const CFrameView& view,
                                         const CFramePlan& plan, const CDrawPipeline& pipeline,
                                         const CSceneMeshes& meshes, CSortedBatches& sorted);
};
