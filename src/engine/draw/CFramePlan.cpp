// SPDX-License-Identifier: MIT
#include "engine/draw/CFramePlan.h"

#include <algorithm>
#include <array>
#include <bit>

#include "engine/gl/gl_api.h"
#include "engine/meshes/CSceneMeshes.h"
#include "engine/pipeline/CFrameView.h"
#include "engine/pipeline/CMaterialLook.h"
#include "engine/plan/CEqualMeshes.h"
#include "engine/plan/CPixelMeter.h"
#include "engine/plan/CPixelWork.h"
#include "engine/plan/choose_levels.h"
#include "model/prepare/CPreparedScene.h"

namespace {

/** Tells the work of nodes in one view. */
class CNodeWork {
  public:
    CNodeWork(const CPreparedScene& scene, const CFrameView& view, CSceneMeshes& meshes,
              const CTextureSet& textures, const std::array<int, 4>& viewport)
        : m_scene(scene),
          m_view(view),
          m_meshes(meshes),
          m_textures(textures),
          m_meter(viewport[2], viewport[3]) {}

    /** Not less than it takes: all faces as near and as much turned to the viewer as any may be. */
    [[nodiscard]] CPixelWork AtMost(const CPreparedNode& node, const CNodeOnScreen& screen) const {
        const auto mesh = static_cast<std::size_t>(node.mesh);
        const CPreparedMesh& source = m_scene.meshes[mesh];
        // What stands beside the middle of a wide view is stretched.
        constexpr double kStretched = 2;
        const auto pixelsPerUnit = static_cast<double>(screen.pixelsPerUnit);
        double pixels = source.area * pixelsPerUnit * pixelsPerUnit * kStretched;
        CPixelUse worst;
        for (const CPreparedBatch& batch : source.batches) {
            const CPreparedMaterial& material = m_scene.materials[batch.material];
            if (IsWire(material)) pixels = CPreparedMesh::kUnknownArea;
            const CPixelUse use = UseOf(material, mesh);
            worst = {std::max(worst.maps, use.maps), std::max(worst.passes, use.passes),
                     worst.blends || use.blends};
        }
        const std::uint32_t triangles = source.IndexCount() / 3;
        const double most = static_cast<double>(triangles) * static_cast<double>(screen.pixels);
        CPixelWork work;
        work.Add(pixels < most ? pixels : most, worst);
        return work;
    }

    [[nodiscard]] CPixelWork Measured(const CPreparedNode& node, bool repeated) {
        const auto mesh = static_cast<std::size_t>(node.mesh);
        const std::vector<CPreparedBatch>& batches = m_scene.meshes[mesh].batches;
        const CMatrix4d clip = m_view.projection * m_view.modelView * CMatrix4d::From(node.meshToWorld);
        const auto front = node.mirrored != m_view.mirrored ? CPixelMeter::EFaces::Clockwise
                                                            : CPixelMeter::EFaces::CounterClockwise;
        const CMeshSample& sample = m_meshes.Sample(m_scene, mesh);
        CPixelWork work;
        for (std::size_t b = 0; b < batches.size(); ++b) {
            const CPreparedMaterial& material = m_scene.materials[batches[b].material];
            if (IsInvisible(material) || (repeated && !IsBlended(material))) continue;
            const auto faces = material.twoSided ? CPixelMeter::EFaces::Both : front;
            const bool wire = IsWire(material);
            double pixels = 0;
            for (const CSampleTriangle& triangle : sample.OfBatch(b)) {
                const CScreenShare share = m_meter.Of(triangle, clip, faces);
                pixels += wire ? share.outline * static_cast<double>(LineWidth(material)) : share.area;
            }
            if (pixels > 0) work.Add(pixels, UseOf(material, mesh));
        }
        return work;
    }

  private:
    [[nodiscard]] CPixelUse UseOf(const CPreparedMaterial& material, std::size_t mesh) const {
        CPixelUse use;
        const CMaterialLook look =
            CMaterialLook::From(material, m_textures, m_meshes.HasTexCoords(mesh), false);
        use.maps = std::popcount(look.surface.maps);
        use.blends = IsBlended(material);
        use.passes = use.blends && MayBeSolid(material) ? 2 : 1;
        return use;
    }

    const CPreparedScene& m_scene;
    const CFrameView& m_view;
    CSceneMeshes& m_meshes;
    const CTextureSet& m_textures;
    CPixelMeter m_meter;
};

/** A node with what it takes at most, and with what all after it in a list take. */
struct CNodeAtMost {
    std::size_t node;
    CPixelWork work, after;
};

/** Those that take most come first. */
void SortAndSum(std::vector<CNodeAtMost>& nodes) {
    std::stable_sort(nodes.begin(), nodes.end(), [](const CNodeAtMost& a, const CNodeAtMost& b) {
        return a.work.WithOneSample() > b.work.WithOneSample();
    });
    CPixelWork sum;
    for (auto node = nodes.rbegin(); node != nodes.rend(); ++node) {
        node->after = sum;
        sum.Add(node->work);
    }
}

}  // namespace

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

void CFramePlan::Dim(const std::vector<bool>& dimmed) {
    for (std::size_t n = 0; n < std::min(nodes.size(), dimmed.size()); ++n) {
        nodes[n].dimmed = dimmed[n];
        nodes[n].repeated = nodes[n].repeated && dimmed[n];
    }
}

void CFramePlan::FitTo(const CPreparedScene& scene, const CSceneMeshes& meshes, const CAllowedCost& allowed,
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
    cost = ChooseLevels(choices, allowed, allowedError);
    for (std::size_t n = 0; n < nodes.size(); ++n) {
        const CNodeOptions& node = choices.nodes[n];
        if (node.count == 0) continue;
        nodes[n].level = node.chosen == node.count ? kBoxLevel : static_cast<int>(node.chosen);
        whole = whole && nodes[n].level == kFullLevel;
    }
    moving = true;
}

int CFramePlan::ReductionFor(const CPreparedScene& scene, const CFrameView& view, CSceneMeshes& meshes,
                             const CTextureSet& textures) const {
    std::array<int, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    GLint samples = 0;
    glGetIntegerv(GL_SAMPLES, &samples);
    const double picture = static_cast<double>(viewport[2]) * viewport[3];
    CNodeWork nodeWork(scene, view, meshes, textures, viewport);
    std::vector<CNodeAtMost> list;
    for (std::size_t n = 0; n < nodes.size(); ++n) {
        if (nodes[n].shown) list.push_back({n, nodeWork.AtMost(scene.nodes[n], nodes[n].screen), {}});
    }
    SortAndSum(list);
    CPixelWork measured;
    for (const CNodeAtMost& next : list) {
        CPixelWork most = measured;
        most.Add(next.work);
        most.Add(next.after);
        if (most.ReductionFor(picture, samples) == 0) return 0;
        measured.Add(nodeWork.Measured(scene.nodes[next.node], nodes[next.node].repeated));
    }
    return measured.ReductionFor(picture, samples);
}
