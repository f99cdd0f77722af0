// SPDX-License-Identifier: MIT
#include "engine/draw/CDrawList.h"

#include <algorithm>
#include <tuple>

#include "engine/draw/CSortedBatches.h"
#include "engine/pipeline/CDrawPipeline.h"
#include "engine/pipeline/CFrameView.h"
#include "engine/pipeline/CMaterialLook.h"

namespace {

float DepthOf(const std::array<double, 4>& row, CVec3 p) {
    return static_cast<float>(row[0] * p.x + row[1] * p.y + row[2] * p.z + row[3]);
}

/** The keys of all materials, each computed at most once a drawing, when something uses it. */
class CKeys {
  public:
    CKeys(const CPreparedScene& scene, const CDrawPipeline& pipeline)
        : m_scene(scene),
          m_pipeline(pipeline),
          m_known(scene.materials.size() * kKinds),
          m_keys(m_known.size()) {}

    std::uint32_t Of(std::uint32_t material, bool hasTexCoords, ESurfacePart part) {
        const std::size_t kind = static_cast<std::size_t>(part) * 2 + (hasTexCoords ? 1u : 0u);
        const std::size_t at = material * kKinds + kind;
        if (!m_known[at]) {
            m_keys[at] = m_pipeline.SortKey(m_scene.materials[material], hasTexCoords, part);
            m_known[at] = true;
        }
        return m_keys[at];
    }

  private:
    static constexpr std::size_t kKinds = 6;  ///< of keys of one material
    const CPreparedScene& m_scene;
    const CDrawPipeline& m_pipeline;
    std::vector<bool> m_known;
    std::vector<std::uint32_t> m_keys;
};

/** Adds one item for each part that the batch's material has. */
template <class TMakePart, class TSort>
void Add(CDrawList& list, const CPreparedMaterial& material, const TMakePart& make, const TSort& sort) {
    if (!IsBlended(material)) {
        list.opaque.push_back(make(ESurfacePart::Whole));
        return;
    }
    const bool parts = MayBeSolid(material);
    if (parts) list.opaque.push_back(make(ESurfacePart::Solid));
    list.transparent.push_back(make(parts ? ESurfacePart::Translucent : ESurfacePart::Whole));
    sort(list.transparent.back());
}

}  // namespace

CDrawList CDrawList::Build(CGlCurrent& gl, const CPreparedScene& scene, const CFrameView& view,
                           const CDrawPipeline& pipeline, const std::vector<CMeshBuffers>& meshes,
                           CSortedBatches& sorted) {
    CDrawList list;
    CKeys keys(scene, pipeline);
    for (std::uint32_t n = 0; n < scene.nodes.size(); ++n) {
        const CPreparedNode& node = scene.nodes[n];
        const auto meshIndex = static_cast<std::size_t>(node.mesh);
        if (!node.visible || node.mesh < 0 || meshIndex >= meshes.size() || !view.MayShow(node.worldBounds))
            continue;
        const CPreparedMesh& mesh = scene.meshes[meshIndex];
        const bool hasTexCoords = meshes[meshIndex].HasTexCoords();
        const std::array<double, 4> row = view.DepthRow(view.EyeModelView(node.meshToWorld));
        const float middle = DepthOf(row, mesh.bounds.Center());
        for (std::uint32_t b = 0; b < mesh.batches.size(); ++b) {
            const CPreparedBatch& batch = mesh.batches[b];
            const CPreparedMaterial& material = scene.materials[batch.material];
            if (batch.indexCount == 0 || IsInvisible(material)) continue;
            const auto part = [&](ESurfacePart which) {
                const std::uint32_t key = keys.Of(batch.material, hasTexCoords, which);
                return CDrawItem{n, b, batch.material, key, middle, false, which};
            };
            Add(list, material, part, [&](CDrawItem& item) {
                if (material.additive || mesh.vertices.empty() || !CSortedBatches::Sorts(batch)) return;
                item.depth = sorted.Sort(gl, n, b, mesh, row).Middle();
                item.sorted = true;
            });
        }
    }
    const auto byState = [](const CDrawItem& a, const CDrawItem& b) {
        return std::tie(a.key, a.material, a.depth, a.node) < std::tie(b.key, b.material, b.depth, b.node);
    };
    std::sort(list.opaque.begin(), list.opaque.end(), byState);
    std::stable_sort(list.transparent.begin(), list.transparent.end(),
                     [](const CDrawItem& a, const CDrawItem& b) { return a.depth > b.depth; });
    return list;
}
