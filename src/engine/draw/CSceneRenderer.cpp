// SPDX-License-Identifier: MIT
#include "engine/draw/CSceneRenderer.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "engine/draw/CBatchDrawer.h"
#include "engine/draw/CDrawList.h"
#include "engine/draw/CFramePlan.h"
#include "engine/draw/CPacedDrawing.h"
#include "engine/draw/CRehearsal.h"
#include "engine/draw/CSceneLevels.h"
#include "engine/draw/CSceneMeshes.h"
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
#include "engine/plan/CEqualMeshes.h"
#include "engine/plan/CFrameBudget.h"
#include "engine/plan/choose_levels.h"
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

/** A plan in full, with the view that it was made for. */
struct CPlanned {
    CMatrix4d projection, modelView;
    std::array<int, 4> viewport;
    CFramePlan plan;
};

std::array<int, 4> Viewport() {
    std::array<int, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    return viewport;
}

}  // namespace

struct CSceneRenderer::CState {
    std::optional<CGlCapabilities> can;
    bool shadersWork = false;
    CShaderPipeline shaders;
    CFixedPipeline fixed;
    CTextureSet textures;
    CTextureSet noTextures;
    CSceneMeshes meshes;
    CEqualMeshes equal;
    CSortedBatches sorted;
    CSceneLevels levels;
    CFrameBudget budget;
    std::optional<CPlanned> planned;  ///< for the next drawing
    float allowedError = 0;           ///< of the last moving frame, see ChooseLevels
    bool isSlow = false;              ///< the last whole frame was
    bool runsLate = false;            ///< the clock has ended a frame since all was at rest
    CRehearsal tried;                 ///< of moving frames, in idle time
    CRehearsal ready;                 ///< of scenes to come

    void Learn(CGlCurrent& gl);
    [[nodiscard]] bool IsSoftware() const { return can->software; }
    template <class TDraw>
    void InFrame(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options, const TDraw& draw);
    [[nodiscard]] CFramePlan Plan(const CPreparedScene& scene, const CFrameView& view,
                                  const CDrawOptions& options, bool moving);
    /** The one that ReductionFor made of this view, or a new one. */
    [[nodiscard]] CFramePlan PlanInFull(const CPreparedScene& scene, const CFrameView& view);
    /** drawn: the share of what was planned; 1 unless it has ended early. */
    void LearnFrom(const CFramePlan& plan, double drawn, double ms);
    bool TryNextKind(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options);
};

void CSceneRenderer::CState::Learn(CGlCurrent& gl) {
    if (can) return;
    can = CGlCapabilities::Query(gl);
    shadersWork = can->shaders && shaders.Check(gl).HasValue();
}

/** Prepares all for drawing the scene, and calls draw(view, pipeline). */
template <class TDraw>
void CSceneRenderer::CState::InFrame(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options,
                                     const TDraw& draw) {
    const CGlStateGuard guard(gl, can->shaders);
    const CFrameView view = CFrameView::FromCurrent(gl);
    const CFrameLights lights = CFrameLights::From(scene, view, options.useFileLights);
    const bool plain = options.textureRenderMode == kNoTextures;
    int polygonMode[2] = {};
    glGetIntegerv(GL_POLYGON_MODE, polygonMode);
    const CFrame frame{view, lights, plain ? noTextures : textures, FilterOf(options.textureRenderMode),
                       polygonMode[0] == GL_LINE};
    CDrawPipeline& pipeline = shadersWork && !options.fixedFunction ? static_cast<CDrawPipeline&>(shaders)
                                                                    : static_cast<CDrawPipeline&>(fixed);
    if (can->shaders) glUseProgram(0);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(view.eyeProjection.ToFloat().data());
    glMatrixMode(GL_MODELVIEW);
    pipeline.Begin(gl, frame);
    draw(view, pipeline);
    pipeline.End(gl);
}

CFramePlan CSceneRenderer::CState::PlanInFull(const CPreparedScene& scene, const CFrameView& view) {
    std::optional<CPlanned> made = std::exchange(planned, std::nullopt);
    if (made && made->projection == view.projection && made->modelView == view.modelView &&
        made->viewport == Viewport())
        return std::move(made->plan);
    return CFramePlan::InFull(scene, view, meshes, equal, IsSoftware());
}

CFramePlan CSceneRenderer::CState::Plan(const CPreparedScene& scene, const CFrameView& view,
                                        const CDrawOptions& options, bool moving) {
    CFramePlan plan = PlanInFull(scene, view);
    plan.Dim(options.dimmed);
    if (!IsSoftware()) return plan;
    if (!options.exact) plan.grainPixels = CFramePlan::kFineGrain;
    if (!moving) return plan;
    plan.FitTo(scene, meshes, {budget.MostCost(), budget.MostCost(CFrameBudget::kPatientMs)}, allowedError);
    plan.largeFirst = runsLate;
    if (!plan.whole) plan.grainPixels = CFramePlan::kCoarseGrain;
    return plan;
}

void CSceneRenderer::CState::LearnFrom(const CFramePlan& plan, double drawn, double ms) {
    constexpr double kSlowMs = 25;
    const bool ended = drawn < 1;
    if (plan.moving) budget.Learn(plan.cost * drawn, ms);
    if (!plan.moving && !ended) isSlow = ms > kSlowMs;
    runsLate = plan.moving && (ended || runsLate);
}

CSceneRenderer::CSceneRenderer() : m_state(std::make_unique<CState>()) {}
CSceneRenderer::~CSceneRenderer() = default;

void CSceneRenderer::Upload(CGlCurrent& gl, const CPreparedScene& scene) {
    m_state->meshes.Clear();
    m_state->textures.Clear();
    Refresh(gl, scene);
}

void CSceneRenderer::Refresh(CGlCurrent& gl, const CPreparedScene& scene) {
    m_state->Learn(gl);
    const CBindingGuard guard(gl);
    m_state->planned.reset();
    if (m_state->meshes.Update(gl, scene)) {
        m_state->sorted.Clear();
        m_state->levels.MeshesChanged();
    }
    m_state->equal.Update(scene);
    m_state->textures.Update(gl, *m_state->can, scene);
}

void CSceneRenderer::Clear(CGlCurrent&) {
    // Programs and capabilities of the context are kept for the next scene.
    if (m_state->shaders.Trim()) m_state->ready.Forget();
    m_state->textures.Clear();
    m_state->noTextures.Clear();
    m_state->meshes.Clear();
    m_state->equal.Clear();
    m_state->sorted.Clear();
    m_state->levels.Forget();
    m_state->tried.Forget();
    m_state->allowedError = 0;
    m_state->isSlow = false;
    m_state->planned.reset();
}

bool CSceneRenderer::Draw(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options,
                          const CDrawPace& wanted) {
    CState& state = *m_state;
    if (state.meshes.Count() == 0) return true;
    bool whole = true;
    state.InFrame(gl, scene, options, [&](const CFrameView& view, CDrawPipeline& pipeline) {
        CPacedDrawing pace(gl, *state.can, wanted);
        const CFramePlan plan = state.Plan(scene, view, options, wanted.moving);
        const CDrawList list = CDrawList::Build(gl, scene, view, plan, pipeline, state.meshes, state.sorted);
        // In software each sample takes as long as a pixel.
        if (plan.moving) glDisable(GL_MULTISAMPLE);
        CBatchDrawer drawer(gl, scene, view, pipeline, state.meshes, state.sorted, pace);
        drawer.DrawOpaque(list.opaque);
        drawer.DrawTransparent(list.transparent);
        drawer.DrawDimmed(list.dimmedOpaque, list.dimmedTransparent);
        const double ms = pace.Finish();
        const double drawn =
            pace.HasEnded() ? std::min(pace.Triangles() / std::max(list.Triangles(), 1.0), 0.999) : 1;
        if (state.IsSoftware() && !options.exact) state.LearnFrom(plan, drawn, ms);
        whole = plan.whole && !pace.HasEnded();
    });
    return whole;
}

int CSceneRenderer::ReductionFor(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options) {
    CState& state = *m_state;
    int polygonMode[2] = {};
    glGetIntegerv(GL_POLYGON_MODE, polygonMode);
    if (!state.can || !state.IsSoftware() || !state.can->framebuffers || state.meshes.Count() == 0 ||
        polygonMode[0] == GL_LINE)
        return 0;
    const CFrameView view = CFrameView::FromCurrent(gl);
    const CTextureSet& textures =
        options.textureRenderMode == kNoTextures ? state.noTextures : state.textures;
    state.planned.emplace(CPlanned{view.projection, view.modelView, Viewport(),
                                   CFramePlan::InFull(scene, view, state.meshes, state.equal, true)});
    return state.planned->plan.ReductionFor(scene, view, state.meshes, textures);
}

bool CSceneRenderer::CState::TryNextKind(CGlCurrent& gl, const CPreparedScene& scene,
                                         const CDrawOptions& options) {
    bool found = false;
    InFrame(gl, scene, options, [&](const CFrameView& view, CDrawPipeline& pipeline) {
        glDisable(GL_MULTISAMPLE);  // as in moving frames: the driver compiles anew for it
        const CRehearsedScene what{scene, view, pipeline, meshes, sorted};
        for (const float grain : {-1.0f, 1e38f})
            found = found || tried.DrawNext(gl, *can, what, CFramePlan::InBoxes(scene, meshes, grain));
    });
    return found;
}

bool CSceneRenderer::GetReadyFor(CGlCurrent& gl, const CPreparedScene& kinds, const CDrawOptions& options) {
    CState& state = *m_state;
    state.Learn(gl);
    if (!state.IsSoftware()) return false;
    const CBindingGuard guard(gl);
    CSceneMeshes meshes;
    CSortedBatches sorted;
    CTextureSet own;
    (void)meshes.Update(gl, kinds);
    own.Update(gl, *state.can, kinds);
    CFramePlan plan;
    plan.nodes.assign(
        kinds.nodes.size(),
        CNodePlan{.shown = true, .repeated = false, .dimmed = false, .level = kFullLevel, .screen = {}});
    bool found = false;
    std::swap(own, state.textures);
    state.InFrame(gl, kinds, options, [&](const CFrameView& view, CDrawPipeline& pipeline) {
        found = state.ready.DrawNext(gl, *state.can, {kinds, view, pipeline, meshes, sorted}, plan);
    });
    std::swap(own, state.textures);
    return found;
}

bool CSceneRenderer::WorkOnLevels(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options) {
    CState& state = *m_state;
    if (!state.can || !state.IsSoftware() || !state.isSlow || state.meshes.Count() == 0) return false;
    // A scene that is never drawn coarser needs nothing.
    if (state.meshes.CostInFull(scene) < CFrameBudget::kLeastCost) return false;
    return state.TryNextKind(gl, scene, options) || state.levels.Work(gl, scene, state.meshes);
}

void CSceneRenderer::PauseLevels(bool paused) {
    m_state->levels.SetPaused(paused);
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
    const std::size_t sum = m_state->textures.Bytes() + m_state->sorted.Bytes();
    return sum + m_state->meshes.Bytes();
}
