// SPDX-License-Identifier: MIT
#include "engine/plan/CEqualMeshes.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <unordered_map>

namespace {

/** Mixes a value into a hash. The seed, an address, differs from run to run, so nobody can make up a file of many places
 * with one hash. */
std::uint64_t Mixed(std::uint64_t hash, std::uint64_t value) {
    static const char place = 0;
    const auto seed = reinterpret_cast<std::uintptr_t>(&place);
    hash = (hash ^ value ^ seed) * 0x9E3779B97F4A7C15u;
    return hash ^ (hash >> 29);
}

std::uint64_t HashOf(const void* data, std::size_t bytes, std::uint64_t hash) {
    const auto* at = static_cast<const unsigned char*>(data);
    for (; bytes >= 8; at += 8, bytes -= 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, at, 8);
        hash = Mixed(hash, word);
    }
    std::uint64_t rest = bytes;
    std::memcpy(&rest, at, bytes);
    return Mixed(hash, rest);
}

template <class T>
std::uint64_t HashOf(const std::vector<T>& values, std::uint64_t hash) {
    return HashOf(values.data(), values.size() * sizeof(T), Mixed(hash, values.size()));
}

template <class T>
bool SameBytes(const std::vector<T>& a, const std::vector<T>& b) {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

std::uint64_t OutlineOf(const CPreparedMesh& mesh) {
    const CBox& box = mesh.bounds;
    const float numbers[] = {box.min.x, box.min.y, box.min.z, box.max.x, box.max.y, box.max.z};
    return Mixed(HashOf(numbers, sizeof numbers, mesh.vertices.size()), mesh.IndexCount());
}

std::uint64_t ContentOf(const CPreparedMesh& mesh) {
    std::uint64_t hash = HashOf(mesh.vertices, 0);
    hash = HashOf(mesh.texCoords, hash);
    hash = HashOf(mesh.indices16, hash);
    return HashOf(mesh.indices32, hash);
}

bool Same(const CPreparedMesh& a, const CPreparedMesh& b) {
    static_assert(sizeof(CPreparedBatch) == 12, "compared byte by byte");
    return SameBytes(a.vertices, b.vertices) && SameBytes(a.texCoords, b.texCoords) &&
           SameBytes(a.indices16, b.indices16) && SameBytes(a.indices32, b.indices32) &&
           SameBytes(a.batches, b.batches);
}

struct CPlaced {
    std::uint32_t mesh;
    CMat4 matrix;

    friend bool operator==(const CPlaced&, const CPlaced&) = default;
};
struct CPlacedHash {
    std::size_t operator()(const CPlaced& placed) const {
        return HashOf(placed.matrix.m.data(), sizeof placed.matrix.m, placed.mesh);
    }
};

}  // namespace

void CEqualMeshes::Clear() {
    m_known.clear();
    m_first.clear();
}

bool CEqualMeshes::IsKnown(const CPreparedScene& scene) const {
    const auto same = [](const CKnown& known, const CPreparedMesh& mesh) {
        return known.stamp == mesh.stamp && known.vertices == mesh.vertices.data() &&
               SameBytes(known.batches, mesh.batches);
    };
    return std::equal(m_known.begin(), m_known.end(), scene.meshes.begin(), scene.meshes.end(), same);
}

void CEqualMeshes::Update(const CPreparedScene& scene) {
    if (IsKnown(scene)) return;
    m_known.clear();
    for (const CPreparedMesh& mesh : scene.meshes)
        m_known.push_back({mesh.stamp, mesh.vertices.data(), mesh.batches});
    m_first.resize(scene.meshes.size());
    std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> outlines;
    for (std::uint32_t i = 0; i < scene.meshes.size(); ++i) {
        if (scene.meshes[i].vertices.empty() && !scene.meshes[i].batches.empty()) continue;
        m_first[i] = i;
        if (!scene.meshes[i].batches.empty()) outlines[OutlineOf(scene.meshes[i])].push_back(i);
    }
    for (const auto& [outline, alike] : outlines) {
        if (alike.size() < 2) continue;
        std::unordered_map<std::uint64_t, std::uint32_t> contents;
        for (const std::uint32_t i : alike) {
            const std::uint32_t first = contents.emplace(ContentOf(scene.meshes[i]), i).first->second;
            if (Same(scene.meshes[first], scene.meshes[i])) m_first[i] = first;
        }
    }
}

std::vector<bool> CEqualMeshes::FindRepeated(const CPreparedScene& scene) const {
    std::vector<bool> result;
    std::vector<std::uint32_t> uses(m_first.size());
    const auto firstOf = [&](const CPreparedNode& node) {
        const bool shown =
            node.visible && node.mesh >= 0 && static_cast<std::size_t>(node.mesh) < uses.size();
        return shown ? static_cast<std::int64_t>(m_first[static_cast<std::size_t>(node.mesh)]) : -1;
    };
    std::uint32_t most = 0;
    for (const CPreparedNode& node : scene.nodes) {
        if (firstOf(node) >= 0) most = std::max(most, ++uses[static_cast<std::size_t>(firstOf(node))]);
    }
    if (most < 2) return result;
    std::unordered_map<CPlaced, bool, CPlacedHash> seen;
    for (std::size_t n = 0; n < scene.nodes.size(); ++n) {
        const std::int64_t first = firstOf(scene.nodes[n]);
        if (first < 0 || uses[static_cast<std::size_t>(first)] < 2) continue;
        const CPlaced placed{static_cast<std::uint32_t>(first), scene.nodes[n].meshToWorld};
        if (seen.emplace(placed, true).second) continue;
        result.resize(scene.nodes.size());
        result[n] = true;
    }
    return result;
}
