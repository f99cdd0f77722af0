// SPDX-License-Identifier: MIT
#include "engine/draw/selection_draw.h"

#include <algorithm>
#include <vector>

#include "engine/gl/gl_api.h"
#include "engine/pipeline/CFrameView.h"
#include "engine/pipeline/CMaterialLook.h"
#include "model/prepare/CPreparedScene.h"

namespace {

constexpr std::size_t kCornersADraw = 3 * 16384;

/** For each vertex a bit for each plane that it is beyond. */
void ClassifyVertices(const CPreparedMesh& mesh, const CMatrix4d& clip, std::vector<std::uint8_t>& beyond) {
    std::array<std::array<float, 4>, 6> planes{};
    const auto exact = ViewPlanes(clip);
    for (std::size_t p = 0; p < planes.size(); ++p) {
        std::transform(exact[p].begin(), exact[p].end(), planes[p].begin(),
                       [](double d) { return static_cast<float>(d); });
    }
    beyond.resize(mesh.vertices.size());
    for (std::size_t v = 0; v < beyond.size(); ++v) {
        const float* at = mesh.vertices[v].position;
        unsigned bits = 0;
        for (unsigned p = 0; p < planes.size(); ++p) {
            const std::array<float, 4>& plane = planes[p];
            const bool outside = plane[0] * at[0] + plane[1] * at[1] + plane[2] * at[2] + plane[3] < 0;
            bits |= static_cast<unsigned>(outside) << p;
        }
        beyond[v] = static_cast<std::uint8_t>(bits);
    }
}

void Flush(std::vector<CVec3>& corners) {
    if (corners.empty()) return;
    glVertexPointer(3, GL_FLOAT, 0, corners.data());
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(corners.size()));
    corners.clear();
}

void DrawBatch(const CPreparedMesh& mesh, const CPreparedBatch& batch,
               const std::vector<std::uint8_t>& beyond, std::vector<CVec3>& corners) {
    for (std::uint32_t i = batch.firstIndex; i + 2 < batch.firstIndex + batch.indexCount; i += 3) {
        const std::uint32_t a = mesh.Index(i), b = mesh.Index(i + 1), c = mesh.Index(i + 2);
        if ((beyond[a] & beyond[b] & beyond[c]) != 0) continue;
        corners.insert(corners.end(), {mesh.vertices[a].Position(), mesh.vertices[b].Position(),
                                       mesh.vertices[c].Position()});
        if (corners.size() >= kCornersADraw) Flush(corners);
    }
    Flush(corners);
}

}  // namespace

void DrawSelectable(CGlCurrent&, const CPreparedScene& scene, const CFrameView& view) {
    glDisableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glDisableClientState(GL_COLOR_ARRAY);
    glEnableClientState(GL_VERTEX_ARRAY);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glCullFace(GL_BACK);
    std::vector<std::uint8_t> beyond;
    std::vector<CVec3> corners;
    for (std::uint32_t n = 0; n < scene.nodes.size(); ++n) {
        const CPreparedNode& node = scene.nodes[n];
        if (!node.visible || node.mesh < 0 || !view.MayShow(node.worldBounds)) continue;
        const CPreparedMesh& mesh = scene.meshes[static_cast<std::size_t>(node.mesh)];
        if (mesh.vertices.empty()) continue;
        const CMatrix4d eyeModelView = view.EyeModelView(node.meshToWorld);
        ClassifyVertices(mesh, view.eyeProjection * eyeModelView, beyond);
        glLoadName(n);
        glLoadMatrixf(eyeModelView.ToFloat().data());
        glFrontFace(node.mirrored != view.mirrored ? GL_CW : GL_CCW);
        for (const CPreparedBatch& batch : mesh.batches) {
            const CPreparedMaterial& material = scene.materials[batch.material];
            if (IsInvisible(material)) continue;
            if (material.twoSided) {
                glDisable(GL_CULL_FACE);
            } else {
                glEnable(GL_CULL_FACE);
            }
            DrawBatch(mesh, batch, beyond, corners);
        }
    }
}
