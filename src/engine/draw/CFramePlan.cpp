// SPDX-License-Identifier: MIT
#include "engine/draw/CFramePlan.h"

#include <array>

#include "engine/draw/CSceneMeshes.h"
#include "engine/gl/gl_api.h"
#include "engine/pipeline/CFrameView.h"
#include "engine/plan/CEqualMeshes.h"
#include "engine/plan/choose_levels.h"
#include "model/prepare/CPreparedScene.h"

CFramePlan CFramePlan::InFull(const CPreparedScene& scene, const CFrameView& view, const CSceneMeshes& meshes,
                              const CEqualMeshes& equal, bool software) {
    CFramePlan plan;
    plan.nodes.resize(scene.nodes.size());
    std::array<int, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    const CScreenScale scale(view, viewport[2], viewport[3]);
    const std::vector<bool> repeated = equal.FindRepeated(scene);
    for (std::size_t n = 0; n < plan.nodes.size(); ++n) {
        const CPreparedNode& node = scene.nodes[n];
        if (!node.visible || node.mesh < 0 || static_cast<std::size_t>(node.mesh) >= meshes.Count() ||
            !view.MayShow(node.worldBounds))
            continue;
        plan.nodes[n].shown = true;
        plan.nodes[n].repeated = !repeated.empty() && repeated[n];
        if (software) plan.nodes[n].screen = scale.Of(node);
    }
    return plan;
}

CFramePlan CFramePlan::InBoxes(const CPreparedScene& scene, const CSceneMeshes& meshes, float grainPixels) {
    CFramePlan plan;
    plan.nodes.resize(scene.nodes.size());
    plan.grainPixels = grainPixels;
    plan.eachBatch = true;
    for (std::size_t n = 0; n < plan.nodes.size(); ++n) {
        const int mesh = scene.nodes[n].mesh;
        plan.nodes[n].shown = mesh >= 0 && static_cast<std::size_t>(mesh) < meshes.Count();
        plan.nodes[n].level = kBoxLevel;
    }
    return plan;
}

void CFramePlan::FitTo(const CPreparedScene& scene, const CSceneMeshes& meshes, double mostCost,
                       float& allowedError) {
    CLevelChoices choices;
    choices.nodes.resize(nodes.size());
    for (std::size_t n = 0; n < nodes.size(); ++n) {
        if (!nodes[n].shown || nodes[n].repeated) continue;
        const std::vector<CSceneMeshes::CForm>& forms =
            meshes.Forms(static_cast<std::size_t>(scene.nodes[n].mesh));
        CNodeOptions& node = choices.nodes[n];
        node.first = static_cast<std::uint32_t>(choices.options.size());
        node.count = static_cast<std::uint32_t>(forms.size());
        node.pixels = nodes[n].screen.pixels;
        for (const CSceneMeshes::CForm& form : forms)
            choices.options.push_back({form.error * nodes[n].screen.pixelsPerUnit, form.cost});
    }
    cost = ChooseLevels(choices, mostCost, allowedError);
    for (std::size_t n = 0; n < nodes.size(); ++n) {
        const CNodeOptions& node = choices.nodes[n];
        if (node.count == 0) continue;
        nodes[n].level = node.chosen == node.count ? kBoxLevel : static_cast<int>(node.chosen);
        whole = whole && nodes[n].level == kFullLevel;
    }
    moving = true;
}
