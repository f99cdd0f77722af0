// SPDX-License-Identifier: MIT
#include "export/gltf/parts/gltf_morphs.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

#include "base/CHashIndex.h"
#include "model/prepare/prepare_scene.h"

namespace {

/** Corners of all shapes together; those of shapes that turn out not to fit count, too, as they took time. */
constexpr std::size_t kMostCorners = 12'000'000;

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

/** The root of the mean square of the angles, in degrees, between the normals of a shape and those half-way between two
 * others that have the same vertices. */
double NormalErrorDeg(const CPreparedMesh& from, const CPreparedMesh& to, const CPreparedMesh& middle,
                      const std::vector<std::uint32_t>& corners) {
    double sum = 0;
    for (const std::uint32_t corner : corners) {
        const CVec3 blended =
            from.vertices[from.Index(corner)].Normal() + to.vertices[to.Index(corner)].Normal();
        const CVec3 wanted = middle.vertices[middle.Index(corner)].Normal();
        const auto cosine = static_cast<double>(Dot(Normalized(blended), Normalized(wanted)));
        const double angle = std::acos(std::clamp(cosine, -1.0, 1.0)) * 180 / std::numbers::pi;
        sum += angle * angle;
    }
    return corners.empty() ? 0 : std::sqrt(sum / static_cast<double>(corners.size()));
}

/** The shapes of one node as they are collected. */
class CMorphMaker {
  public:
    /** left: how many corners may still be made; reduced. */
    CMorphMaker(const CScene& model, const CPreparedScene& scene, const CPreparedNode& node,
                std::size_t& left)
        : m_model(model), m_scene(scene), m_node(node), m_left(left) {}

    /** Nothing where the shapes do not fit, or have too many corners. */
    std::optional<CGltfMorph> Make() {
        const std::vector<CMorphKey>& keys = m_node.morph.keys;
        if (!Add({keys[0].mesh, keys[0].mesh, 0})) return std::nullopt;
        for (const CMorphKey& key : keys) {
            if (!m_ends.contains(key.mesh) && !Add({key.mesh, key.mesh, 0})) return std::nullopt;
        }
        if (m_made.size() < 2) return std::nullopt;
        for (std::size_t k = 1; k < keys.size(); ++k) AddWay(keys[k - 1].mesh, keys[k].mesh);
        return Joined();
    }

  private:
    bool Add(const CMorphShape& shape) {
        const std::size_t corners = m_scene.meshes[static_cast<std::size_t>(m_node.mesh)].IndexCount();
        if (corners > m_left) return false;
        m_left -= corners;
        std::optional<CPreparedMesh> mesh = ShapedMesh(m_model, m_scene, m_node, shape);
        if (!mesh) return false;
        if (!m_made.empty() && !HaveSameFaces(m_made[0], *mesh)) return false;
        if (shape.from == shape.to) m_ends.emplace(shape.from, m_made.size());
        m_made.push_back(std::move(*mesh));
        return true;
    }

    /** The error of straight pieces falls with the square of their number. */
    void AddWay(std::size_t from, std::size_t to) {
        constexpr double kMostPieces = 8;
        if (from == to || !m_ways.try_emplace({from, to}).second) return;
        std::vector<std::size_t>& way = m_ways[{from, to}];
        way.push_back(m_ends[from]);
        if (const auto back = m_ways.find({to, from}); back != m_ways.end()) {
            way.assign(back->second.rbegin(), back->second.rend());
            return;
        }
        const CPreparedMesh &first = m_made[m_ends[from]], &last = m_made[m_ends[to]];
        const std::optional<CPreparedMesh> middle = ShapedMesh(m_model, m_scene, m_node, {from, to, 0.5F});
        if (middle && HaveSameFaces(first, *middle)) {
            const CCornerNumbers numbers({first, last, *middle});
            const double error = NormalErrorDeg(first, last, *middle, numbers.Corners());
            const auto pieces = static_cast<int>(std::clamp(std::ceil(std::sqrt(error)), 1.0, kMostPieces));
            for (int i = 1; i < pieces; ++i) {
                const float share = static_cast<float>(i) / static_cast<float>(pieces);
                if (!Add({from, to, share})) {
                    way.resize(1);
                    break;
                }
                way.push_back(m_made.size() - 1);
            }
        }
        way.push_back(m_ends[to]);
    }

    std::optional<CGltfMorph> Joined() {
        CGltfMorph morph;
        const CCornerNumbers numbers(m_made);
        morph.base = Renumbered(m_made[0], numbers);
        for (const CPreparedMesh& mesh : m_made) morph.bounds.Add(mesh.bounds);
        for (std::size_t i = 1; i < m_made.size(); ++i) {
            std::vector<CPreparedVertex>& vertices = morph.others.emplace_back();
            for (const std::uint32_t corner : numbers.Corners())
                vertices.push_back(m_made[i].vertices[m_made[i].Index(corner)]);
        }
        for (const auto& [mesh, shape] : m_ends) m_ways[{mesh, mesh}] = {shape};
        morph.ways = std::move(m_ways);
        return morph;
    }

    const CScene& m_model;
    const CPreparedScene& m_scene;
    const CPreparedNode& m_node;
    std::size_t& m_left;
    std::vector<CPreparedMesh> m_made;
    std::map<std::size_t, std::size_t> m_ends;  ///< the shapes that are a mesh of the scene
    decltype(CGltfMorph::ways) m_ways;
};

}  // namespace

std::vector<float> CGltfMorph::WeightsOf(const CMorphShape& shape) const {
    std::vector<float> weights(others.size());
    const auto way = ways.find({shape.from, shape.to});
    if (way == ways.end() || way->second.empty()) return weights;
    const std::vector<std::size_t>& shapes = way->second;
    const float along = std::clamp(shape.share, 0.0F, 1.0F) * static_cast<float>(shapes.size() - 1);
    const auto before = std::min(static_cast<std::size_t>(along), shapes.size() - 1);
    const float share = along - static_cast<float>(before);
    const auto add = [&](std::size_t at, float weight) {
        if (weight > 0 && shapes[at] > 0) weights[shapes[at] - 1] += weight;
    };
    add(before, 1 - share);
    if (share > 0) add(before + 1, share);
    return weights;
}

std::map<std::size_t, CGltfMorph> MorphsOf(const CScene& model, const CPreparedScene& scene,
                                           const std::vector<bool>& shownNodes) {
    std::map<std::size_t, CGltfMorph> morphs;
    std::size_t left = kMostCorners;
    for (std::size_t n = 0; n < scene.nodes.size(); ++n) {
        const CPreparedNode& node = scene.nodes[n];
        if (!shownNodes[n] || node.morph.keys.size() < 2) continue;
        std::optional<CGltfMorph> morph = CMorphMaker(model, scene, node, left).Make();
        if (morph) morphs.emplace(static_cast<std::size_t>(node.mesh), std::move(*morph));
    }
    return morphs;
}
