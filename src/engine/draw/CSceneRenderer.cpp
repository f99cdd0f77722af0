// SPDX-License-Identifier: MIT
#include "engine/draw/CSceneRenderer.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "engine/draw/CBatchDrawer.h"
#include "engine/draw/CPacedDrawing.h"
#include "engine/draw/CSceneRendererState.h"
#include "engine/draw/selection_draw.h"
#include "engine/gl/CGlStateGuard.h"
#include "engine/gl/gl_api.h"
#include "engine/pipeline/CFrameLights.h"
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

std::array<int, 4> Viewport() {
    std::array<int, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    return viewport;
}

}  // namespace

void CSceneRenderer::CState::Learn(CGlCurrent& gl) {
    if (can) return;
    can = CGlCapabilities::Query(gl);
    shadersWork = can->shaders && shaders.Check(gl).HasValue();
}

void CSceneRenderer::CState::InFrame(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options,
                                     const std::function<void(const CFrameView&, CDrawPipeline&)>& draw) {
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
    if (plan.moving) {
        budget.Learn(plan.cost * drawn, ms);
        movingReduction.Learn(ended, ms);
    }
    if (!plan.moving && !ended) isSlow = ms > kSlowMs;
    runsLate = plan.moving && (ended || runsLate);
}

CSceneRenderer::CSceneRenderer(bool arraysStay) : m_state(std::make_unique<CState>()) {
    m_state->arraysStay = arraysStay;
}
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
    if (m_state->meshes.Update(gl, scene, ReadsArrays() ? EArrays::InPlace : EArrays::Copied)) {
        m_state->sorted.Clear();
        m_state->levels.MeshesChanged();
    }
    m_state->equal.Update(scene);
    m_state->textures.Update(gl, *m_state->can, scene);
}

bool CSceneRenderer::ReadsArrays() const {
    return m_state->arraysStay && m_state->can && m_state->can->memoryInPlace;
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
    m_state->movingReduction = {};
    m_state->planned.reset();
    ForgetKept();
}

void CSceneRenderer::ForgetKept() {
    m_state->followed.Forget();
    m_state->kept = {};
}

bool CSceneRenderer::Draw(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options,
                          const CDrawPace& pace) {
    CState& state = *m_state;
    if (state.meshes.Count() == 0) return true;
    bool whole = true;
    const bool follows = pace.follows && state.IsSoftware() && !options.exact;
    state.InFrame(gl, scene, options, [&](const CFrameView& view, CDrawPipeline& pipeline) {
        const CDrawing drawing{gl, scene, options, pace, view, pipeline};
        whole = follows ? state.DrawFollowing(drawing) : state.DrawAll(drawing);
    });
    return whole;
}

bool CSceneRenderer::CState::DrawAll(const CDrawing& d) {
    CPacedDrawing pace(d.gl, *can, d.pace);
    const CFramePlan plan = Plan(d.scene, d.view, d.options, d.pace.moving);
    const CDrawList list = CDrawList::Build(d.gl, d.scene, d.view, plan, d.pipeline, meshes, sorted);
    // In software each sample takes as long as a pixel.
    if (plan.moving) glDisable(GL_MULTISAMPLE);
    CBatchDrawer drawer(d.gl, d.scene, d.view, d.pipeline, meshes, sorted, pace);
    drawer.DrawOpaque(list.opaque);
    drawer.DrawTransparent(list.transparent);
    drawer.DrawDimmed(list.dimmedOpaque, list.dimmedTransparent);
    const double ms = pace.Finish();
    const double drawn =
        pace.HasEnded() ? std::min(pace.Triangles() / std::max(list.Triangles(), 1.0), 0.999) : 1;
    const bool whole = plan.whole && !pace.HasEnded();
    if (!IsSoftware() || d.options.exact) return whole;
    LearnFrom(plan, drawn, ms);
    if (whole && !plan.moving) Rested(d);
    return whole;
}

int CSceneRenderer::ReductionFor(CGlCurrent& gl, const CPreparedScene& scene, const CDrawOptions& options,
                                 const CDrawPace& pace) {
    CState& state = *m_state;
    int polygonMode[2] = {};
    glGetIntegerv(GL_POLYGON_MODE, polygonMode);
    if (!state.can || !state.IsSoftware() || !state.can->framebuffers || state.meshes.Count() == 0 ||
        polygonMode[0] == GL_LINE)
        return 0;
    if (pace.moving) {
        const int divisor = state.movingReduction.Divisor();
        return divisor > 1 && !pace.follows ? divisor : 0;
    }
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
    // To shrink its first picture the driver compiles something, too.
    if (own.Bytes() > 0 && !std::exchange(state.madeTextures, true)) return true;
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
    return found || (!state.madeTextures && state.MakeFirstTexture(gl, kinds));
}

bool CSceneRenderer::CState::MakeFirstTexture(CGlCurrent& gl, const CPreparedScene& kinds) {
    madeTextures = true;
    if (kinds.textures.empty()) return false;
    CGlTexture().Fill(gl, *can, kinds.textures.front().image, ETextureWrap::Repeat);
    glFinish();
    return false;
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
