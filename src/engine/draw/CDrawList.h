// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "engine/draw/CMeshBuffers.h"
#include "engine/pipeline/shader_source.h"

class CDrawPipeline;
class CSortedBatches;
struct CFrameView;

/** One batch of one node to draw. */
struct CDrawItem {
    std::uint32_t node = 0, batch = 0, material = 0;
    std::uint32_t key = 0;  ///< CDrawPipeline::SortKey
    float depth = 0;        ///< of the middle; larger is farther
    bool sorted = false;    ///< its indices are in the CSortedBatches
    ESurfacePart part = ESurfacePart::Whole;
};

/** What a frame draws, in this order: what is outside the view, hidden or invisible is left out. What is
 * transparent by its pictures alone is in both lists, once for each part. That holds for pictures without
 * half-tones, too: filtering makes some at every edge, and of a small fence or leaf nothing else is left. */
struct CDrawList {
    std::vector<CDrawItem> opaque;       ///< grouped by program and material, near ones first
    std::vector<CDrawItem> transparent;  ///< far ones first

    [[nodiscard]] static CDrawList Build(CGlCurrent& gl, const CPreparedScene& scene, const CFrameView& view,
                                         const CDrawPipeline& pipeline,
                                         const std::vector<CMeshBuffers>& meshes, CSortedBatches& sorted);
};
