// SPDX-License-Identifier: MIT
// Pictures of a scene while an edit follows the user's hand, in software.
#include <algorithm>
#include <array>

#include "engine/draw/CBatchDrawer.h"
#include "engine/draw/CPacedDrawing.h"
#include "engine/draw/CSceneRendererState.h"
#include "engine/gl/gl_api.h"
#include "engine/plan/choose_levels.h"

namespace {

/** What one picture may take, so that one comes with each period of a display of 60 a second. */
constexpr double kFollowMs = 12;
/** What the first one may take, for which the rest is drawn. */
constexpr double kRestMs = 90;

CStillScene StillOf(const CDrawing& d) {
    CStillScene still = CStillScene::Of(d.scene, d.view);
    std::array<int, 2> polygonMode{};
    glGetIntegerv(GL_VIEWPORT, still.viewport.data());
    glGetIntegerv(GL_POLYGON_MODE, polygonMode.data());
    still.options = {polygonMode[0], d.options.textureRenderMode, d.options.useFileLights ? 1 : 0,
                     d.options.fixedFunction ? 1 : 0};
    still.dimmed = d.options.dimmed;
    return still;
}

/** As CFrameBudget counts it. */
double CostOf(const CDrawList& list) {
    std::size_t calls = 0;
    for (const auto* items : {&list.opaque, &list.transparent, &list.dimmedOpaque, &list.dimmedTransparent})
        calls += items->size();
    return list.Triangles() + static_cast<double>(calls) * CFrameBudget::kCallCost;
}

/** Draws a hair nearer, so that what shares its place with something kept wins, whatever the order is in a whole picture. */
class CAHairNearer {
  public:
    CAHairNearer() {
        glEnable(GL_POLYGON_OFFSET_FILL);
        glEnable(GL_POLYGON_OFFSET_LINE);
        glPolygonOffset(0, -1);
    }
    CAHairNearer(const CAHairNearer&) = delete;
    CAHairNearer& operator=(const CAHairNearer&) = delete;
    ~CAHairNearer() {
        glPolygonOffset(0, 0);
        glDisable(GL_POLYGON_OFFSET_FILL);
        glDisable(GL_POLYGON_OFFSET_LINE);
    }
};

}  // namespace

void CSceneRenderer::CState::Rested(const CDrawing& d) {
    followed.Rested(StillOf(d), d.scene.materials);
    if (!followed.IsKept()) kept = {};
}

bool CSceneRenderer::CState::DrawFollowing(const CDrawing& d) {
    if (!canKeep) return DrawAll(d);
    switch (followed.Next(StillOf(d), d.scene.materials)) {
        case CFollowedEdit::EPicture::Whole:
            return DrawAll(d);
        case CFollowedEdit::EPicture::KeepsRest:
            DrawRest(d);
            break;
        case CFollowedEdit::EPicture::OnRestKept:
            kept.PutBack(d.gl);
            break;
    }
    DrawChanging(d);
    return false;
}

void CSceneRenderer::CState::DrawRest(const CDrawing& d) {
    const bool coarse = d.pace.moving && budget.MsOf(meshes.CostInFull(d.scene)) > kRestMs;
    const CFramePlan plan = Plan(d.scene, d.view, d.options, coarse);
    CDrawList list = CDrawList::Build(d.gl, d.scene, d.view, plan, d.pipeline, meshes, sorted);
    std::erase_if(list.opaque, [&](const CDrawItem& item) { return followed.Changes(item.material); });
    if (plan.moving) glDisable(GL_MULTISAMPLE);
    CPacedDrawing pace(d.gl, *can, {.moving = coarse, .interrupt = nullptr, .clock = d.pace.clock});
    CBatchDrawer(d.gl, d.scene, d.view, d.pipeline, meshes, sorted, pace).DrawOpaque(list.opaque);
    (void)pace.Finish();
    if (pace.HasEnded()) return;
    canKeep = kept.Keep(d.gl);
    if (canKeep) followed.SetKept(!plan.whole);
}

CDrawList CSceneRenderer::CState::ListOfChanging(const CDrawing& d, const CFramePlan& plan) {
    CDrawList list = CDrawList::Build(d.gl, d.scene, d.view, plan, d.pipeline, meshes, sorted);
    std::erase_if(list.opaque, [&](const CDrawItem& item) { return !followed.Changes(item.material); });
    return list;
}

void CSceneRenderer::CState::DrawChanging(const CDrawing& d) {
    CPacedDrawing pace(d.gl, *can, {.moving = d.pace.moving, .interrupt = nullptr, .clock = d.pace.clock});
    CFramePlan plan = Plan(d.scene, d.view, d.options, false);
    CDrawList list = ListOfChanging(d, plan);
    const double most = followBudget.MostCost(kFollowMs);
    if (const double cost = CostOf(list); d.pace.moving && cost > most) {
        // The levels are chosen for the whole scene, so that what changes gets its share.
        const double share = most / cost * meshes.CostInFull(d.scene);
        plan.FitTo(d.scene, meshes, {share, share}, followError);
        if (!plan.whole) plan.grainPixels = CFramePlan::kCoarseGrain;
        list = ListOfChanging(d, plan);
        glDisable(GL_MULTISAMPLE);
    }
    const CAHairNearer nearer;
    CBatchDrawer drawer(d.gl, d.scene, d.view, d.pipeline, meshes, sorted, pace);
    drawer.DrawOpaque(list.opaque);
    drawer.DrawTransparent(list.transparent);
    drawer.DrawDimmed(list.dimmedOpaque, list.dimmedTransparent);
    const double ms = pace.Finish();
    if (!pace.HasEnded()) followBudget.Learn(CostOf(list), ms);
}
