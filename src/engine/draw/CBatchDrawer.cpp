// SPDX-License-Identifier: MIT
#include "engine/draw/CBatchDrawer.h"

#include <algorithm>
#include <cmath>

#include "engine/draw/CPacedDrawing.h"
#include "engine/draw/CSortedBatches.h"
#include "engine/gl/gl_api.h"
#include "engine/pipeline/CFrameView.h"
#include "engine/pipeline/CMaterialLook.h"

CBatchDrawer::CBatchDrawer(CGlCurrent& gl, const CPreparedScene& scene, const CFrameView& view,
                           CDrawPipeline& pipeline, const std::vector<CMeshBuffers>& meshes,
                           const CSortedBatches& sorted, CPacedDrawing& pace)
    : m_gl(gl),
      m_scene(scene),
      m_view(view),
      m_pipeline(pipeline),
      m_meshes(meshes),
      m_sorted(sorted),
      m_pace(pace) {
    glGetIntegerv(GL_POLYGON_MODE, m_polygonMode);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDisable(GL_ALPHA_TEST);
    glDisable(GL_FOG);
    glCullFace(GL_BACK);
    // With blending it would make the seams between triangles visible.
    glDisable(GL_POLYGON_SMOOTH);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_COLOR_ARRAY);
}

void CBatchDrawer::DrawOpaque(const std::vector<CDrawItem>& items) {
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
    for (const CDrawItem& item : items) {
        Prepare(item);
        const CPreparedBatch& batch = m_scene.meshes[*m_mesh].batches[item.batch];
        m_meshes[*m_mesh].Draw(m_gl, batch.firstIndex, batch.indexCount);
        m_pace.Drawn(batch.indexCount / 3);
    }
}

void CBatchDrawer::DrawTransparent(const std::vector<CDrawItem>& items) {
    if (items.empty()) return;
    glDepthMask(GL_FALSE);
    glEnable(GL_BLEND);
    for (const CDrawItem& item : items) {
        Prepare(item);
        const CPreparedMaterial& material = m_scene.materials[item.material];
        const GLenum behind = material.additive ? GL_ONE : GL_ONE_MINUS_SRC_ALPHA;
        glBlendFuncSeparate(GL_SRC_ALPHA, behind, material.additive ? GL_ZERO : GL_ONE, behind);
        const CMeshBuffers& mesh = m_meshes[*m_mesh];
        const CPreparedBatch& batch = m_scene.meshes[*m_mesh].batches[item.batch];
        if (item.sorted) {
            m_sorted.BindIndices(m_gl, item.node, item.batch);
            m_ownIndices = false;
            mesh.Draw(m_gl, 0, batch.indexCount);
        } else if (material.twoSided) {
            DrawBothSides(mesh, batch);
        } else {
            mesh.Draw(m_gl, batch.firstIndex, batch.indexCount);
        }
        m_pace.Drawn(batch.indexCount / 3);
    }
}

/** The far side first: the right order for convex shapes, without sorting. */
void CBatchDrawer::DrawBothSides(const CMeshBuffers& mesh, const CPreparedBatch& batch) {
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT);
    mesh.Draw(m_gl, batch.firstIndex, batch.indexCount);
    glCullFace(GL_BACK);
    mesh.Draw(m_gl, batch.firstIndex, batch.indexCount);
    glDisable(GL_CULL_FACE);
}

void CBatchDrawer::Prepare(const CDrawItem& item) {
    const CPreparedNode& node = m_scene.nodes[item.node];
    const auto meshIndex = static_cast<std::uint32_t>(node.mesh);
    const CMeshBuffers& mesh = m_meshes[meshIndex];
    if (m_mesh != meshIndex || (!m_ownIndices && !item.sorted)) {
        mesh.Bind(m_gl);
        m_mesh = meshIndex;
        m_ownIndices = true;
    }
    const bool newMaterial =
        m_material != item.material || m_hasTexCoords != mesh.HasTexCoords() || m_part != item.part;
    if (newMaterial) {
        m_material = item.material;
        m_hasTexCoords = mesh.HasTexCoords();
        m_part = item.part;
        UseMaterial(item, m_hasTexCoords);
    }
    if (newMaterial || m_node != item.node) {
        m_pipeline.UseTransform(m_gl, m_view.EyeModelView(node.meshToWorld));
        glFrontFace(node.mirrored != m_view.mirrored ? GL_CW : GL_CCW);
        m_node = item.node;
    }
}

void CBatchDrawer::UseMaterial(const CDrawItem& item, bool hasTexCoords) {
    const CPreparedMaterial& material = m_scene.materials[item.material];
    m_pipeline.UseMaterial(m_gl, material, hasTexCoords, item.part);
    if (material.twoSided) {
        glDisable(GL_CULL_FACE);
    } else {
        glEnable(GL_CULL_FACE);
    }
    UsePolygonMode(material);
}

void CBatchDrawer::UsePolygonMode(const CPreparedMaterial& material) {
    const bool wire = IsWire(material);
    if (wire) {
        const bool usable = std::isfinite(material.wireSizePx) && material.wireSizePx > 0;
        glLineWidth(usable ? std::min(material.wireSizePx, 64.0f) : 1.0f);
    }
    if (wire == m_wire) return;
    m_wire = wire;
    if (wire) {
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
        return;
    }
    glPolygonMode(GL_FRONT, static_cast<GLenum>(m_polygonMode[0]));
    glPolygonMode(GL_BACK, static_cast<GLenum>(m_polygonMode[1]));
    glLineWidth(1);
}
