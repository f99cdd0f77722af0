// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/draw/CDrawList.h"
#include "engine/pipeline/CDrawPipeline.h"

class CPacedDrawing;
class CSortedBatches;

/** Draws the items of a draw list through a pipeline, and changes only the OpenGL state that differs from one
 * item to the next. Lives for one drawing of the view, inside a CGlStateGuard. */
class CBatchDrawer {
  public:
    CBatchDrawer(CGlCurrent& gl, const CPreparedScene& scene, const CFrameView& view, CDrawPipeline& pipeline,
                 const std::vector<CMeshBuffers>& meshes, const CSortedBatches& sorted, CPacedDrawing& pace);

    void DrawOpaque(const std::vector<CDrawItem>& items);
    void DrawTransparent(const std::vector<CDrawItem>& items);

  private:
    void Prepare(const CDrawItem& item);
    void UseMaterial(const CDrawItem& item, bool hasTexCoords);
    void UsePolygonMode(const CPreparedMaterial& material);
    void DrawBothSides(const CMeshBuffers& mesh, const CPreparedBatch& batch);

    CGlCurrent& m_gl;
    const CPreparedScene& m_scene;
    const CFrameView& m_view;
    CDrawPipeline& m_pipeline;
    const std::vector<CMeshBuffers>& m_meshes;
    const CSortedBatches& m_sorted;
    CPacedDrawing& m_pace;
    int m_polygonMode[2] = {};  ///< the caller's, front and back
    std::optional<std::uint32_t> m_node, m_material, m_mesh;
    bool m_hasTexCoords = false;
    ESurfacePart m_part = ESurfacePart::Whole;
    bool m_ownIndices = true;  ///< the mesh's own index buffer is bound
    bool m_wire = false;
};
