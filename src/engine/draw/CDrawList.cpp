// SPDX-License-Identifier: MIT
#include "engine/draw/CDrawList.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>

#include "engine/draw/CFramePlan.h"
#include "engine/meshes/CSceneMeshes.h"
#include "engine/meshes/CSortedBatches.h"
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

    std::uint32_t Of(std::uint32_t material, const CSurfaceUse& use) {
        std::size_t kind = static_cast<std::size_t>(use.part);
        for (const bool flag : {use.hasTexCoords, use.litByVertex, use.dimmed})
            kind = kind * 2 + (flag ? 1u : 0u);
        const std::size_t at = material * kKinds + kind;
        if (!m_known[at]) {
            m_keys[at] = m_pipeline.SortKey(m_scene.materials[material], use);
            m_known[at] = true;
        }
        return m_keys[at];
    }

  private:
    static constexpr std::size_t kKinds = 24;  ///< of keys of one material
    const CPreparedScene& m_scene;
    const CDrawPipeline& m_pipeline;
    std::vector<bool> m_known;
    std::vector<std::uint32_t> m_keys;
};

/** Large nodes come first, as what comes last may be left out; alike ones stay grouped. */
int RankOf(float pixels) {
    return pixels < 1 ? 32 : 32 - std::ilogb(pixels);
}

/** Collects the items of a drawing, node by node. */
class CListBuilder {
  public:
    CListBuilder(CGlCurrent& gl, const CPreparedScene& scene, const CFrameView& view, const CFramePlan& plan,
                 const CDrawPipeline& pipeline, const CSceneMeshes& meshes, CSortedBatches& sorted)
        : m_gl(gl),
          m_scene(scene),
          m_view(view),
          m_plan(plan),
          m_meshes(meshes),
          m_sorted(sorted),
          m_keys(scene, pipeline) {}

    void AddNode(std::uint32_t n) {
        const CPreparedNode& node = m_scene.nodes[n];
        const CNodePlan& plan = m_plan.nodes[n];
        m_mesh = static_cast<std::size_t>(node.mesh);
        m_row = m_view.DepthRow(m_view.EyeModelView(node.meshToWorld));
        m_shape = m_meshes.Shape(m_scene, m_mesh, plan.level);
        CDrawItem item;
        item.node = n;
        item.level = plan.level;
        item.depth = DepthOf(m_row, m_scene.meshes[m_mesh].bounds.Center());
        item.rank = m_plan.largeFirst ? RankOf(plan.screen.pixels) : 0;
        item.use.hasTexCoords = m_meshes.HasTexCoords(m_mesh);
        item.use.dimmed = plan.dimmed;
        if (m_shape.batches == nullptr) return AddBoxes(item, plan);
        for (std::uint32_t b = 0; b < m_shape.batches->size(); ++b) {
            const CPreparedBatch& batch = (*m_shape.batches)[b];
            item.batch = b;
            item.firstIndex = batch.firstIndex;
            item.indexCount = batch.indexCount;
            item.pixels = plan.screen.pixels * m_meshes.Layers(m_mesh, b);
            item.use.litByVertex =
                m_meshes.Grain(m_mesh, plan.level, b) * plan.screen.pixelsPerUnit <= m_plan.grainPixels;
            Add(item, batch, plan.repeated);
        }
    }

    CDrawList list;

  private:
    /** One box, in the material of most of the triangles, or one for each batch. */
    void AddBoxes(CDrawItem item, const CNodePlan& plan) {
        constexpr std::uint32_t kBoxIndices = 36;
        item.indexCount = kBoxIndices;
        item.pixels = plan.screen.pixels;
        item.use.litByVertex = m_plan.grainPixels > 0 && m_plan.eachBatch;
        const std::vector<CPreparedBatch>& batches = m_scene.meshes[m_mesh].batches;
        const auto largest = std::max_element(
            batches.begin(), batches.end(),
            [](const CPreparedBatch& a, const CPreparedBatch& b) { return a.indexCount < b.indexCount; });
        for (auto batch = batches.begin(); batch != batches.end(); ++batch) {
            item.batch = static_cast<std::uint32_t>(batch - batches.begin());
            if (m_plan.eachBatch || batch == largest) Add(item, *batch, plan.repeated);
        }
    }

    /** Adds one item for each part that the batch's material has. */
    void Add(CDrawItem item, const CPreparedBatch& batch, bool repeated) {
        const CPreparedMaterial& material = m_scene.materials[batch.material];
        if (item.indexCount == 0 || IsInvisible(material)) return;
        item.material = batch.material;
        std::vector<CDrawItem>& opaque = item.use.dimmed ? list.dimmedOpaque : list.opaque;
        if (!IsBlended(material)) {
            if (!repeated) Put(opaque, item, ESurfacePart::Whole);
            return;
        }
        const bool parts = MayBeSolid(material);
        if (parts && !repeated) Put(opaque, item, ESurfacePart::Solid);
        if (!material.additive && !m_shape.sorting.vertices.empty() && CSortedBatches::Sorts(batch)) {
            item.depth = m_sorted.Sort(m_gl, item.node, item.batch, m_shape.sorting, batch, m_row).Middle();
            item.sorted = true;
            item.firstIndex = 0;
        }
        Put(item.use.dimmed ? list.dimmedTransparent : list.transparent, item,
            parts ? ESurfacePart::Translucent : ESurfacePart::Whole);
    }

    void Put(std::vector<CDrawItem>& to, CDrawItem item, ESurfacePart part) {
        item.use.part = part;
        item.key = m_keys.Of(item.material, item.use);
        to.push_back(item);
    }

    CGlCurrent& m_gl;
    const CPreparedScene& m_scene;
    const CFrameView& m_view;
    const CFramePlan& m_plan;
    const CSceneMeshes& m_meshes;
    CSortedBatches& m_sorted;
    CKeys m_keys;
    std::size_t m_mesh = 0;  ///< of the node at work
    std::array<double, 4> m_row{};
    CShape m_shape;
};

}  // namespace

double CDrawList::Triangles() const {
    std::uint64_t sum = 0;
    // Opaque dimmed ones are drawn twice.
    for (const auto* items : {&opaque, &transparent, &dimmedOpaque, &dimmedOpaque, &dimmedTransparent}) {
        for (const CDrawItem& item : *items) sum += item.indexCount / 3;
    }
    return static_cast<double>(sum);
}

CDrawList CDrawList::Build(CGlCurrent& gl, const CPreparedScene& scene, const CFrameView& view,
                           const CFramePlan& plan, const CDrawPipeline& pipeline, const CSceneMeshes& meshes,
                           CSortedBatches& sorted) {
    CListBuilder builder(gl, scene, view, plan, pipeline, meshes, sorted);
    for (std::uint32_t n = 0; n < scene.nodes.size(); ++n) {
        if (plan.nodes[n].shown) builder.AddNode(n);
    }
    CDrawList list = std::move(builder.list);
    const auto byState = [](const CDrawItem& a, const CDrawItem& b) {
        return std::tie(a.rank, b.key, b.material, a.depth, b.node) <
               std::tie(b.rank, a.key, a.material, b.depth, a.node);
    };
    for (auto* items : {&list.opaque, &list.dimmedOpaque}) std::sort(items->begin(), items->end(), byState);
    for (auto* items : {&list.transparent, &list.dimmedTransparent})
        std::stable_sort(items->begin(), items->end(),
                         [](const CDrawItem& a, const CDrawItem& b) { return a.depth > b.depth; });
    return list;
}
