// SPDX-License-Identifier: MIT
#include "engine/draw/CSceneRenderer.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "engine/draw/CBatchDrawer.h"
#include "engine/draw/CDrawList.h"
#include "engine/draw/CMeshBuffers.h"
#include "engine/draw/CPacedDrawing.h"
#include "engine/draw/CSortedBatches.h"
#include "engine/draw/selection_draw.h"
#include "engine/gl/CGlCapabilities.h"
#include "engine/gl/CGlStateGuard.h"
#include "engine/gl/gl_api.h"
#include "engine/pipeline/CFixedPipeline.h"
#include "engine/pipeline/CFrameLights.h"
#include "engine/pipeline/CFrameView.h"
#include "engine/pipeline/CShaderPipeline.h"
#include "engine/pipeline/CTextureSet.h"
#include "model/prepare/CPreparedScene.h"

namespace {

constexpr int kNoTextures = 3;

ETextureFilter FilterOf(int textureRenderMode) {
    switch (textureRenderMode) {
        case 1:
            return ETextureFilter::Bilinear;
        case 2:
            return ETextureFilter::Nearest;
        default:
            return ETextureFilter::Trilinear;
    }
}

/** Restores the caller's bound buffers and textures, because uploading binds others. */
class CBindingGuard {
  public:
    explicit CBindingGuard(CGlCurrent&) {
        glPushAttrib(GL_TEXTURE_BIT);
        glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
    }
    CBindingGuard(const CBindingGuard&) = delete;
    CBindingGuard& operator=(const CBindingGuard&) = delete;
    ~CBindingGuard() {
        glPopClientAttrib();
        glPopAttrib();
    }
};

}  // namespace

struct CSceneRenderer::CState {
    std::optional<CGlCapabilities> can;
    bool shadersWork = false;
    CShaderPipeline shaders;
    CFixedPipeline fixed;
    CTextureSet textures;
    CTextureSet noTextures;
    std::vector<CMeshBuffers> meshes;
    CSortedBatches sorted;

    void Learn(CGlCurrent& gl);
    /** True when a mesh is not the same as before. */
    bool UpdateMeshes(CGlCurrent& gl, const CPreparedScene& scene);
};

void CSceneRenderer::CState::Learn(CGlCurrent& gl) {
    if (can) return;
    can = CGlCapabilities::Query(gl);
    shadersWork = can->shaders && shaders.Check(gl).HasValue();
}

bool CSceneRenderer::CState::UpdateMeshes(CGlCurrent& gl, const CPreparedScene& scene) {
    std::vector<CMeshBuffers> before = std::move(meshes);
    bool changed = before.size() != scene.meshes.size();
    meshes.clear();
    meshes.resize(scene.meshes.size());
    for (std::size_t i = 0; i < meshes.size(); ++i) {
        const CPreparedMesh& mesh = scene.meshes[i];
        const auto holds = [&](const CMeshBuffers& buffers) { return buffers.HoldsVerticesOf(mesh); };
        const bool givenBack = mesh.vertices.empty() && !mesh.batches.empty();
        // Meshes mostly keep their place, so that is where to look first.
        const bool isInPlace = i < before.size() && (givenBack || holds(before[i]));
        auto found = isInPlace ? before.begin() + static_cast<std::ptrdiff_t>(i)
                               : std::find_if(before.begin(), before.end(), holds);
        changed = changed || !isInPlace;
        if (found != before.end()) {
            meshes[i] = std::move(*found);
            *found = {};
            if (!givenBack) changed = meshes[i].RefreshIndices(gl, mesh) || changed;
        } else if (!mesh.vertices.empty() && mesh.IndexCount() > 0) {
            meshes[i].Upload(gl, mesh);
        }
    }
    return changed;
}

CSceneRenderer::CSceneRenderer() : m_state(std::make_unique<CState>()) {}
CSceneRenderer::~CSceneRenderer() = default;

void CSceneRenderer::Upload(CGlCurrent& gl, const CPreparedScene& scene) {
    m_state->meshes.clear();
    m_state->textures.Clear();
    Refresh(gl, scene);
}

void CSceneRenderer::Refresh(CGlCurrent& gl, const CPreparedScene& scene) {
    m_state->Learn(gl);
    const CBindingGuard guard(gl);
    if (m_state->UpdateMeshes(gl, scene)) m_state->sorted.Clear();
    m_state->textures.Update(gl, *m_state->can, scene);
}

void CSceneRenderer::Clear(CGlCurrent&) {
    // Programs and capabilities of the context are kept for the next scene.
    m_state->shaders.Trim();
    m_state->textures.Clear();
    m_state->noTextures.Clear();
    m_state->meshes.clear();
    m_state->sorted.Clear();
}

void CSceneRenderer::Draw(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options) {
    if (m_state->meshes.empty()) return;
    const CGlStateGuard guard(gl, m_state->can->shaders);
    const CFrameView view = CFrameView::FromCurrent(gl);
    const CFrameLights lights = CFrameLights::From(scene, view, options.useFileLights);
    const bool plain = options.textureRenderMode == kNoTextures;
    int polygonMode[2] = {};
    glGetIntegerv(GL_POLYGON_MODE, polygonMode);
    const CFrame frame{view, lights, plain ? m_state->noTextures : m_state->textures,
                       FilterOf(options.textureRenderMode), polygonMode[0] == GL_LINE};

    CDrawPipeline& pipeline = m_state->shadersWork && !options.fixedFunction
                                  ? static_cast<CDrawPipeline&>(m_state->shaders)
                                  : static_cast<CDrawPipeline&>(m_state->fixed);
    if (m_state->can->shaders) glUseProgram(0);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(view.eyeProjection.ToFloat().data());
    glMatrixMode(GL_MODELVIEW);
    pipeline.Begin(gl, frame);
    const CDrawList list = CDrawList::Build(gl, scene, view, pipeline, m_state->meshes, m_state->sorted);
    CPacedDrawing pace(gl, *m_state->can);
    CBatchDrawer drawer(gl, scene, view, pipeline, m_state->meshes, m_state->sorted, pace);
    drawer.DrawOpaque(list.opaque);
    drawer.DrawTransparent(list.transparent);
    pipeline.End(gl);
}

void CSceneRenderer::DrawForSelection(CGlCurrent& gl, const CPreparedScene& scene) {
    // Selection needs no buffers, only the capabilities, which the first upload queries.
    if (!m_state->can) return;
    const CGlStateGuard guard(gl, m_state->can->shaders);
    const CFrameView view = CFrameView::FromCurrent(gl);
    if (m_state->can->shaders) glUseProgram(0);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(view.eyeProjection.ToFloat().data());
    glMatrixMode(GL_MODELVIEW);
    DrawSelectable(gl, scene, view);
}

std::size_t CSceneRenderer::GpuBytes() const {
    std::size_t sum = m_state->textures.Bytes() + m_state->sorted.Bytes();
    for (const CMeshBuffers& mesh : m_state->meshes) sum += mesh.Bytes();
    return sum;
}
