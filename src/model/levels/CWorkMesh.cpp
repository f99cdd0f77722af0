// SPDX-License-Identifier: MIT
#include "model/levels/CWorkMesh.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace {

constexpr std::uint32_t kNone = 0xFFFFFFFFu;
constexpr double kCellsASide = 1 << 18;

/** Numbers things by an open table: equal ones get the number of the first. */
class CNumbering {
  public:
    explicit CNumbering(std::size_t most) : m_table(std::bit_ceil(2 * most + 1), kNone) {}

    /** isEqual(n) tells whether the thing is the one with number n; next is its number if it is new. */
    template <class TIsEqual>
    std::uint32_t NumberOf(std::uint64_t hash, std::uint32_t next, const TIsEqual& isEqual) {
        const std::size_t mask = m_table.size() - 1;
        std::size_t at = static_cast<std::size_t>((hash * 0x9E3779B97F4A7C15u) >> 32) & mask;
        while (m_table[at] != kNone && !isEqual(m_table[at])) at = (at + 1) & mask;
        if (m_table[at] == kNone) m_table[at] = next;
        return m_table[at];
    }

  private:
    std::vector<std::uint32_t> m_table;
};

std::uint64_t Bits(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

bool SameTexCoords(const CPreparedMesh& mesh, std::uint32_t a, std::uint32_t b) {
    if (mesh.texCoords.empty()) return true;
    const CVec2 first = mesh.texCoords[a], second = mesh.texCoords[b];
    return first.x == second.x && first.y == second.y;
}

}  // namespace

CWorkMesh::CWorkMesh(const CPreparedMesh& mesh, bool welded) {
    if (!FindGrid(mesh)) return;
    if (welded) {
        Weld(mesh);
    } else {
        Split(mesh);
    }
}

bool CWorkMesh::FindGrid(const CPreparedMesh& mesh) {
    CBox box;
    for (const CPreparedVertex& vertex : mesh.vertices) {
        if (!IsFinite(vertex.Position())) return false;
        box.Add(vertex.Position());
    }
    if (box.IsEmpty()) return false;
    const CVec3 size = box.max - box.min;
    const double largest =
        std::max({static_cast<double>(size.x), static_cast<double>(size.y), static_cast<double>(size.z)});
    m_cell = static_cast<float>(largest / kCellsASide);
    m_low = box.min;
    return std::isnormal(m_cell) && std::isfinite(1 / m_cell);
}

CVec3 CWorkMesh::PlaceOf(const CPreparedVertex& vertex) const {
    const CVec3 p = (vertex.Position() - m_low) * (1 / m_cell);
    return {std::nearbyint(p.x), std::nearbyint(p.y), std::nearbyint(p.z)};
}

void CWorkMesh::AddTriangle(std::array<std::uint32_t, 3> corners) {
    const auto [a, b, c] = corners;
    if (a != b && b != c && c != a) m_triangles.insert(m_triangles.end(), corners.begin(), corners.end());
}

void CWorkMesh::Split(const CPreparedMesh& mesh) {
    std::vector<std::uint32_t> number(mesh.vertices.size(), kNone);
    const auto numberOf = [&](std::uint32_t vertex, std::uint32_t batch) {
        std::uint32_t& known = number[vertex];
        if (known == kNone || m_batch[known] != batch) {
            known = static_cast<std::uint32_t>(m_places.size());
            m_places.push_back(PlaceOf(mesh.vertices[vertex]));
            m_batch.push_back(batch);
            m_sources.push_back(vertex);
        }
        return known;
    };
    m_triangles.reserve(mesh.IndexCount());
    for (std::uint32_t b = 0; b < mesh.batches.size(); ++b) {
        const CPreparedBatch& batch = mesh.batches[b];
        for (std::uint32_t i = batch.firstIndex; i + 2 < batch.firstIndex + batch.indexCount; i += 3) {
            const std::uint32_t first = numberOf(mesh.Index(i), b), second = numberOf(mesh.Index(i + 1), b);
            AddTriangle({first, second, numberOf(mesh.Index(i + 2), b)});
        }
    }
}

void CWorkMesh::Weld(const CPreparedMesh& mesh) {
    const CWorkMesh split(mesh, false);
    m_triangles.reserve(split.m_triangles.size());
    std::vector<std::uint32_t> weldedTo(split.m_places.size()), standsFor;
    CNumbering numbering(split.m_places.size());
    for (std::uint32_t v = 0; v < weldedTo.size(); ++v) {
        const CVec3 p = split.m_places[v];
        const std::uint64_t hash = (Bits(p.x) << 32 | Bits(p.y)) ^ (Bits(p.z) * 0xC2B2AE3D27D4EB4Fu) ^
                                   (std::uint64_t{split.m_batch[v]} << 21);
        const auto next = static_cast<std::uint32_t>(m_places.size());
        weldedTo[v] = numbering.NumberOf(hash, next, [&](std::uint32_t n) {
            return m_places[n] == p && m_batch[n] == split.m_batch[v] &&
                   SameTexCoords(mesh, standsFor[n], split.m_sources[v]);
        });
        if (weldedTo[v] != next) continue;
        m_places.push_back(p);
        m_batch.push_back(split.m_batch[v]);
        standsFor.push_back(split.m_sources[v]);
    }
    for (std::size_t i = 0; i < split.m_triangles.size(); i += 3) {
        AddTriangle({weldedTo[split.m_triangles[i]], weldedTo[split.m_triangles[i + 1]],
                     weldedTo[split.m_triangles[i + 2]]});
    }
    ListCandidates(split.m_sources, weldedTo);
}

void CWorkMesh::ListCandidates(const std::vector<std::uint32_t>& vertices,
                               const std::vector<std::uint32_t>& weldedTo) {
    m_first.assign(m_places.size() + 1, 0);
    for (const std::uint32_t v : weldedTo) ++m_first[v + 1];
    for (std::size_t i = 1; i < m_first.size(); ++i) m_first[i] += m_first[i - 1];
    std::vector<std::uint32_t> next(m_first.begin(), m_first.end() - 1);
    m_sources.resize(vertices.size());
    for (std::size_t i = 0; i < vertices.size(); ++i) m_sources[next[weldedTo[i]]++] = vertices[i];
}

std::array<std::uint32_t, 3> CWorkMesh::CornersOf(const CPreparedMesh& mesh,
                                                  const std::uint32_t* triangle) const {
    if (m_first.empty()) return {m_sources[triangle[0]], m_sources[triangle[1]], m_sources[triangle[2]]};
    const CVec3 a = m_places[triangle[0]];
    const CVec3 facing = Normalized(Cross(m_places[triangle[1]] - a, m_places[triangle[2]] - a));
    std::array<std::uint32_t, 3> corners{};
    for (std::size_t c = 0; c < corners.size(); ++c) {
        float best = -2;
        for (std::uint32_t i = m_first[triangle[c]]; i < m_first[triangle[c] + 1]; ++i) {
            const float likeness = Dot(facing, mesh.vertices[m_sources[i]].Normal());
            if (likeness <= best) continue;
            best = likeness;
            corners[c] = m_sources[i];
        }
    }
    return corners;
}
