// SPDX-License-Identifier: MIT
#include "engine/draw/CRehearsal.h"

#include <algorithm>
#include <vector>

#include "engine/draw/CBatchDrawer.h"
#include "engine/draw/CDrawList.h"
#include "engine/draw/CFramePlan.h"
#include "engine/draw/CPacedDrawing.h"
#include "engine/gl/gl_api.h"
#include "model/prepare/CPreparedScene.h"

bool CRehearsal::IsNew(const CDrawItem& item, int blending) {
    return m_drawn.emplace(blending, item.use.hasTexCoords, item.key).second;
}

bool CRehearsal::DrawNext(CGlCurrent& gl, const CGlCapabilities& can, const CRehearsedScene& what,
                          const CFramePlan& plan) {
    CDrawList list =
        CDrawList::Build(gl, what.scene, what.view, plan, what.pipeline, what.meshes, what.sorted);
    bool found = false;
    for (auto* items : {&list.opaque, &list.transparent}) {
        const auto isNew = [&](const CDrawItem& item) {
            const int blended = what.scene.materials[item.material].additive ? 1 : 2;
            return IsNew(item, items == &list.opaque ? 0 : blended);
        };
        const auto item = found ? items->end() : std::find_if(items->begin(), items->end(), isNew);
        found = found || item != items->end();
        *items = item == items->end() ? std::vector<CDrawItem>{} : std::vector{*item};
    }
    if (!found) return false;
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 1, 1);
    CPacedDrawing pace(gl, can, CDrawPace{});
    CBatchDrawer drawer(gl, what.scene, what.view, what.pipeline, what.meshes, what.sorted, pace);
    drawer.DrawOpaque(list.opaque);
    drawer.DrawTransparent(list.transparent);
    (void)pace.Finish();
    return true;
}
