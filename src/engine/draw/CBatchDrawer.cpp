// SPDX-License-Identifier: MIT
#include "engine/draw/CBatchDrawer.h"

#include <algorithm>

#include "engine/draw/CPacedDrawing.h"
#include "engine/gl/gl_api.h"
#include "engine/meshes/CSortedBatches.h"
#include "engine/pipeline/CFrameView.h"
#include "engine/pipeline/CMaterialLook.h"

CBatchDrawer::CBatchDrawer(CGlCurrent& gl, const CPreparedScene& scene, const CFrameView& view,
                           CDrawPipeline& pipeline, const CSceneMeshes& meshes, const CSortedBatches& sorted,
                           CPacedDrawing& pace)
    : m_gl(gl),
      m_scene(scene),
      m_view(view),
      m_pipeline(pipeline),
      m_meshes(meshes),
      m_sorted(sorted),
      m_pace(pace) {
    glGetIntegerv(GL_POLYGON_MODE, m_polygonMode);
    glEnable(GL_DEPTH_TEST);
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
    m_opaque = true;
    glDisable(GL_BLEND);
    for (const CDrawItem& item : items) {
        if (m_pace.HasEnded()) return;
        Prepare(item);
        DrawTriangles(item);
    }
}

void CBatchDrawer::DrawTransparent(const std::vector<CDrawItem>& items) {
    if (items.empty()) return;
    glDepthMask(GL_FALSE);
    m_opaque = false;
    m_material.reset();
    glEnable(GL_BLEND);
    for (const CDrawItem& item : items) {
        if (m_pace.HasEnded()) return;
        Prepare(item);
        const CPreparedMaterial& material = m_scene.materials[item.material];
        BlendAs(material);
        if (item.sorted) {
            m_sorted.BindIndices(m_gl, item.node, item.batch);
            m_ownIndices = false;
        }
        if (material.twoSided && !item.sorted) {
            DrawBothSides(item);
        } else {
            DrawTriangles(item);
        }
    }
}

void CBatchDrawer::BlendAs(const CPreparedMaterial& material) {
    const GLenum behind = material.additive ? GL_ONE : GL_ONE_MINUS_SRC_ALPHA;
    const GLenum own = m_pipeline.MultipliesByOpacity() ? GL_ONE : GL_SRC_ALPHA;
    glBlendFuncSeparate(own, behind, material.additive ? GL_ZERO : GL_ONE, behind);
}

void CBatchDrawer::DrawDimmed(const std::vector<CDrawItem>& opaque,
                              const std::vector<CDrawItem>& transparent) {
    if (opaque.empty() && transparent.empty()) return;
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    m_material.reset();
    DrawOpaque(opaque);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    DrawTransparent(opaque);
    DrawTransparent(transparent);
}

void CBatchDrawer::DrawTriangles(const CDrawItem& item) {
    const std::uint32_t triangles = item.indexCount / 3, parts = m_pace.PartsOf(triangles, item.pixels);
    const std::uint32_t step = (triangles + parts - 1) / parts;
    for (std::uint32_t first = 0; first < triangles && !m_pace.HasEnded(); first += step) {
        const std::uint32_t count = std::min(step, triangles - first);
        m_shape.vertices->Draw(m_gl, item.firstIndex + 3 * first, 3 * count);
        m_pace.Drawn(count, item.pixels / static_cast<float>(parts));
    }
}

/** The far side first: the right order for convex shapes, without sorting. */
void CBatchDrawer::DrawBothSides(const CDrawItem& item) {
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT);
    DrawTriangles(item);
    glCullFace(GL_BACK);
    DrawTriangles(item);
    glDisable(GL_CULL_FACE);
}

void CBatchDrawer::Bind(const CDrawItem& item, std::size_t mesh) {
    // All boxes are one.
    const std::pair<std::size_t, int> wanted(item.level == kBoxLevel ? 0 : mesh, item.level);
    if (m_bound == wanted && (m_ownIndices || item.sorted)) return;
    m_bound = wanted;
    m_shape = m_meshes.Shape(m_scene, mesh, item.level);
    m_shape.Bind(m_gl);
    m_ownIndices = true;
}

void CBatchDrawer::Prepare(const CDrawItem& item) {
    const CPreparedNode& node = m_scene.nodes[item.node];
    const auto mesh = static_cast<std::size_t>(node.mesh);
    Bind(item, mesh);
    const bool newMaterial = m_material != item.material || m_use != item.use;
    if (newMaterial) {
        m_material = item.material;
        m_use = item.use;
        UseMaterial(item);
    }
    if (newMaterial || m_node != item.node || m_level != item.level) {
        const CMat4 toWorld = item.level == kBoxLevel
                                  ? node.meshToWorld * BoxPlacement(m_scene.meshes[mesh].bounds)
                                  : node.meshToWorld;
        m_pipeline.UseTransform(m_gl, m_view.EyeModelView(toWorld));
        glFrontFace(node.mirrored != m_view.mirrored ? GL_CW : GL_CCW);
        m_node = item.node;
        m_level = item.level;
    }
}

void CBatchDrawer::UseMaterial(const CDrawItem& item) {
    const CPreparedMaterial& material = m_scene.materials[item.material];
    m_pipeline.UseMaterial(m_gl, material, item.use);
    if (material.twoSided) {
        glDisable(GL_CULL_FACE);
    } else {
        glEnable(GL_CULL_FACE);
    }
    UsePolygonMode(material);
    // Of many opaque surfaces in one place only the first is lit. Lines share their places with each other.
    const bool lines = m_wire || m_polygonMode[0] == GL_LINE;
    glDepthFunc(m_opaque && !lines ? GL_LESS : GL_LEQUAL);
}

void CBatchDrawer::UsePolygonMode(const CPreparedMaterial& material) {
    const bool wire = IsWire(material);
    if (wire) {
        glLineWidth(LineWidth(material));
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
