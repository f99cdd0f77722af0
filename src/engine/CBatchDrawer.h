// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/CDrawList.h"
#include "engine/CDrawPipeline.h"

class CSortedBatches;

/**
 * Draws the items of a draw list through a pipeline, and changes only the OpenGL state that differs from one
 * item to the next. Lives for one frame, inside a CGlStateGuard.
 */
class CBatchDrawer {
  public:
    CBatchDrawer(CGlCurrent& gl, const CPreparedScene& scene, const CFrameView& view, CDrawPipeline& pipeline,
                 const std::vector<CMeshBuffers>& meshes, const CSortedBatches& sorted, bool software);

    void DrawOpaque(const std::vector<CDrawItem>& items);
    void DrawTransparent(const std::vector<CDrawItem>& items);

  private:
    void Prepare(const CDrawItem& item);
    void UseMaterial(const CPreparedMaterial& material, bool hasTexCoords);
    void UsePolygonMode(const CPreparedMaterial& material);
    /** Bounds what a software renderer stores of a frame; large scenes are drawn faster so, too. */
    void FinishNowAndThen(std::uint32_t triangles);
    void DrawBothSides(const CMeshBuffers& mesh, const CPreparedBatch& batch);

    CGlCurrent& m_gl;
    const CPreparedScene& m_scene;
    const CFrameView& m_view;
    CDrawPipeline& m_pipeline;
    const std::vector<CMeshBuffers>& m_meshes;
    const CSortedBatches& m_sorted;
    int m_polygonMode[2] = {};  ///< the caller's, front and back
    std::optional<std::uint32_t> m_node, m_material, m_mesh;
    bool m_hasTexCoords = false;
    bool m_ownIndices = true;  ///< the mesh's own index buffer is bound
    bool m_wire = false;
    bool m_software;
    std::uint32_t m_pending = 0;  ///< triangles since the last time all were finished
};
