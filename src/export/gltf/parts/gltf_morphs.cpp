// SPDX-License-Identifier: MIT
#include "export/gltf/parts/gltf_morphs.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/CHashIndex.h"
#include "model/prepare/prepare_scene.h"

namespace {

/** Vertices of all shapes together. */
constexpr std::size_t kMostVertices = 8'000'000;

bool HaveSameFaces(const CPreparedMesh& a, const CPreparedMesh& b) {
    const auto isSame = [](const CPreparedBatch& one, const CPreparedBatch& other) {
        return one.firstIndex == other.firstIndex && one.indexCount == other.indexCount;
    };
    return a.IndexCount() == b.IndexCount() && a.texCoords.empty() == b.texCoords.empty() &&
           std::equal(a.batches.begin(), a.batches.end(), b.batches.begin(), b.batches.end(), isSame);
}

/** Which corners have one vertex depends on the shape: those that have one in all shapes get one number. */
class CCornerNumbers {
  public:
    explicit CCornerNumbers(const std::vector<CPreparedMesh>& shapes) : m_of(shapes[0].IndexCount()) {
        for (std::uint32_t c = 0; c < m_of.size(); ++c) m_of[c] = shapes[0].Index(c);
        for (const CPreparedMesh& shape : shapes) Join(shape);
    }
    [[nodiscard]] const std::vector<std::uint32_t>& Of() const { return m_of; }
    /** A corner for each number. */
    [[nodiscard]] const std::vector<std::uint32_t>& Corners() const { return m_corners; }

  private:
    void Join(const CPreparedMesh& shape) {
        std::vector<std::pair<std::uint32_t, std::uint32_t>> pairs;
        std::vector<std::uint32_t> corners;
        CHashIndex known(shape.vertices.size());
        for (std::uint32_t c = 0; c < m_of.size(); ++c) {
            const std::pair pair{m_of[c], shape.Index(c)};
            const auto fresh = static_cast<std::uint32_t>(pairs.size());
            const std::uint64_t key = std::uint64_t{pair.first} << 32 | pair.second;
            const std::uint32_t found =
                known.FindOrAdd(key, fresh, [&](std::uint32_t i) { return pairs[i] == pair; });
            if (found == fresh) {
                pairs.push_back(pair);
                corners.push_back(c);
            }
            m_of[c] = found;
        }
        m_corners = std::move(corners);
    }

    std::vector<std::uint32_t> m_of, m_corners;
};

CPreparedMesh Renumbered(const CPreparedMesh& mesh, const CCornerNumbers& numbers) {
    CPreparedMesh result;
    result.name = mesh.name;
    result.batches = mesh.batches;
    for (const std::uint32_t corner : numbers.Corners()) {
        result.vertices.push_back(mesh.vertices[mesh.Index(corner)]);
        if (!mesh.texCoords.empty()) result.texCoords.push_back(mesh.texCoords[mesh.Index(corner)]);
    }
    result.indices32 = numbers.Of();
    return result;
}

std::vector<std::size_t> ShapesOf(const CPreparedMorph& morph) {
    std::vector<std::size_t> shapes;
    std::vector<std::size_t> seen;
    for (const CMorphKey& key : morph.keys) {
        const auto place = std::lower_bound(seen.begin(), seen.end(), key.mesh);
        if (place != seen.end() && *place == key.mesh) continue;
        seen.insert(place, key.mesh);
        shapes.push_back(key.mesh);
    }
    return shapes;
}

std::optional<CGltfMorph> MorphOf(const CScene& model, const CPreparedScene& scene, const CPreparedNode& node,
                                  std::vector<std::size_t> shapes) {
    std::vector<CPreparedMesh> made;
    CGltfMorph morph;
    for (const std::size_t shape : shapes) {
        std::optional<CPreparedMesh> mesh = ShapedMesh(model, scene, node, {shape, shape, 0});
        if (!mesh || (!made.empty() && !HaveSameFaces(made[0], *mesh))) return std::nullopt;
        morph.bounds.Add(mesh->bounds);
        made.push_back(std::move(*mesh));
    }
    const CCornerNumbers numbers(made);
    morph.base = Renumbered(made[0], numbers);
    for (std::size_t i = 1; i < made.size(); ++i) {
        std::vector<CPreparedVertex>& vertices = morph.others.emplace_back();
        for (const std::uint32_t corner : numbers.Corners())
            vertices.push_back(made[i].vertices[made[i].Index(corner)]);
    }
    morph.shapes = std::move(shapes);
    return morph;
}

}  // namespace

std::vector<float> CGltfMorph::WeightsOf(const CMorphShape& shape) const {
    std::vector<float> weights(others.size());
    const auto add = [&](std::size_t mesh, float share) {
        const auto place = std::find(shapes.begin(), shapes.end(), mesh);
        if (place != shapes.end() && place != shapes.begin())
            weights[static_cast<std::size_t>(place - shapes.begin()) - 1] += share;
    };
    add(shape.from, 1 - shape.share);
    add(shape.to, shape.share);
    return weights;
}

std::map<std::size_t, CGltfMorph> MorphsOf(const CScene& model, const CPreparedScene& scene,
                                           const std::vector<bool>& shownNodes) {
    std::map<std::size_t, CGltfMorph> morphs;
    std::size_t left = kMostVertices;
    for (std::size_t n = 0; n < scene.nodes.size(); ++n) {
        const CPreparedNode& node = scene.nodes[n];
        if (!shownNodes[n] || node.morph.keys.size() < 2) continue;
        std::vector<std::size_t> shapes = ShapesOf(node.morph);
        const auto mesh = static_cast<std::size_t>(node.mesh);
        const std::size_t corners = scene.meshes[mesh].IndexCount();
        if (shapes.size() < 2 || corners > left / shapes.size()) continue;
        std::optional<CGltfMorph> morph = MorphOf(model, scene, node, std::move(shapes));
        if (!morph) continue;
        left -= morph->base.vertices.size() * morph->shapes.size();
        morphs.emplace(mesh, std::move(*morph));
    }
    return morphs;
}
