// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "engine/draw/CDrawList.h"
#include "engine/meshes/CSceneMeshes.h"
#include "engine/pipeline/CDrawPipeline.h"

class CPacedDrawing;
class CSortedBatches;

/** Draws the items of a draw list through a pipeline, and changes only the OpenGL state that differs from one
 * item to the next. Lives for one drawing of the view, inside a CGlStateGuard. */
class CBatchDrawer {
  public:
    CBatchDrawer(CGlCurrent& gl, const CPreparedScene& scene, const CFrameView& view, CDrawPipeline& pipeline,
                 const CSceneMeshes& meshes, const CSortedBatches& sorted, CPacedDrawing& pace);

    /** Both end early when the pace says so. */
    void DrawOpaque(const std::vector<CDrawItem>& items);
    void DrawTransparent(const std::vector<CDrawItem>& items);
    /** Of the opaque ones only what is nearest shows, blended once, as if all of them were one thing of glass. */
    void DrawDimmed(const std::vector<CDrawItem>& opaque, const std::vector<CDrawItem>& transparent);

  private:
    void BlendAs(const CPreparedMaterial& material);
    void Prepare(const CDrawItem& item);
    void UseMaterial(const CDrawItem& item);
    void UsePolygonMode(const CPreparedMaterial& material);
    void Bind(const CDrawItem& item, std::size_t mesh);
    void DrawTriangles(const CDrawItem& item);
    void DrawBothSides(const CDrawItem& item);

    CGlCurrent& m_gl;
    const CPreparedScene& m_scene;
    const CFrameView& m_view;
    CDrawPipeline& m_pipeline;
    const CSceneMeshes& m_meshes;
    const CSortedBatches& m_sorted;
    CPacedDrawing& m_pace;
    int m_polygonMode[2] = {};  ///< the caller's, front and back
    std::optional<std::uint32_t> m_node, m_material;
    std::optional<std::pair<std::size_t, int>> m_bound;  ///< mesh and level
    CShape m_shape;                                      ///< the bound one
    int m_level = 0;                                     ///< of the transform in use
    CSurfaceUse m_use;
    bool m_ownIndices = true;  ///< the shape's own index buffer is bound
    bool m_wire = false;
    bool m_opaque = true;  ///< the opaque items are being drawn
};
