// SPDX-License-Identifier: MIT
#include "export/pov_parts.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace {

/**
 * The connected pieces of a mesh. A piece is closed when each edge is run through as often one way as the
 * other; that is summed up with hashes, so that no table of edges is needed.
 */
class CShells {
  public:
    explicit CShells(std::size_t positions)
        : m_parent(positions), m_sum(positions), m_seesThrough(positions) {
        std::iota(m_parent.begin(), m_parent.end(), 0u);
    }

    void Join(std::uint32_t a, std::uint32_t b) { m_parent[Root(a)] = Root(b); }
    /** After all joining. */
    void Count(std::uint32_t a, std::uint32_t b, bool seesThrough) {
        const std::uint32_t root = Root(a);
        if (a != b) m_sum[root] += a < b ? Mixed(a, b) : 0 - Mixed(b, a);
        if (seesThrough) m_seesThrough[root] = true;
    }
    /** After all counting. */
    [[nodiscard]] bool HidesItsInside(std::uint32_t a) {
        const std::uint32_t root = Root(a);
        return m_sum[root] == 0 && !m_seesThrough[root];
    }

  private:
    std::uint32_t Root(std::uint32_t a) {
        while (m_parent[a] != a) a = m_parent[a] = m_parent[m_parent[a]];
        return a;
    }
    static std::uint64_t Mixed(std::uint64_t a, std::uint64_t b) {
        std::uint64_t key = (a << 32 | b) + 0x9E3779B97F4A7C15u;
        key = (key ^ (key >> 33)) * 0xFF51AFD7ED558CCDu;
        key = (key ^ (key >> 33)) * 0xC4CEB9FE1A85EC53u;
        return key ^ (key >> 33);
    }

    std::vector<std::uint32_t> m_parent;
    std::vector<std::uint64_t> m_sum;
    std::vector<bool> m_seesThrough;
};

template <class Visit>
void ForEachFace(const CPreparedMesh& mesh, std::span<const CPovBatch> batches, Visit visit) {
    for (std::size_t b = 0; b < mesh.batches.size(); ++b) {
        if (batches[b].skipped) continue;
        const CPreparedBatch& range = mesh.batches[b];
        for (std::uint32_t i = range.firstIndex; i + 2 < range.firstIndex + range.indexCount; i += 3) {
            visit(CPovFace{{mesh.Index(i), mesh.Index(i + 1), mesh.Index(i + 2)}, batches[b].texture},
                  batches[b]);
        }
    }
}

bool IsInside(const CBox& box, CVec3 p) {
    return p.x >= box.min.x && p.y >= box.min.y && p.z >= box.min.z && p.x <= box.max.x && p.y <= box.max.y &&
           p.z <= box.max.z;
}

bool TurnsItsBack(const CPreparedMesh& mesh, const CPovFace& face, std::span<const CVec3> eyes) {
    std::array<std::array<double, 3>, 3> p{};
    for (std::size_t i = 0; i < 3; ++i) {
        const float(&at)[3] = mesh.vertices[face.corner[i]].position;
        p[i] = {static_cast<double>(at[0]), static_cast<double>(at[1]), static_cast<double>(at[2])};
    }
    const auto away = [&](CVec3 eye) {
        const std::array<double, 3> e{static_cast<double>(eye.x) - p[0][0],
                                      static_cast<double>(eye.y) - p[0][1],
                                      static_cast<double>(eye.z) - p[0][2]};
        double volume = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::size_t j = (i + 1) % 3, k = (i + 2) % 3;
            volume += e[i] *
                      ((p[1][j] - p[0][j]) * (p[2][k] - p[0][k]) - (p[1][k] - p[0][k]) * (p[2][j] - p[0][j]));
        }
        return volume < 0;
    };
    return std::all_of(eyes.begin(), eyes.end(), away);
}

/** The pieces of the mesh, or nothing when none of them may hide its inside. */
CShells FindShells(const CPreparedMesh& mesh, const CPovMesh& numbers, std::span<const CPovBatch> batches) {
    CShells shells(numbers.positions.size());
    const auto at = [&](const CPovFace& face, std::size_t i) {
        return numbers.positionOf[face.corner[i % 3]];
    };
    ForEachFace(mesh, batches, [&](const CPovFace& face, const CPovBatch&) {
        shells.Join(at(face, 0), at(face, 1));
        shells.Join(at(face, 0), at(face, 2));
    });
    ForEachFace(mesh, batches, [&](const CPovFace& face, const CPovBatch& batch) {
        for (std::size_t i = 0; i < 3; ++i) shells.Count(at(face, i), at(face, i + 1), batch.seesThrough);
    });
    return shells;
}

}  // namespace

std::vector<CPovPart> SplitIntoParts(const CPreparedMesh& mesh, const CPovMesh& numbers,
                                     std::span<const CPovBatch> batches, std::span<const CVec3> eyes,
                                     bool smooth) {
    const bool anyOneSided = std::any_of(batches.begin(), batches.end(),
                                         [](const CPovBatch& b) { return b.oneSided && !b.skipped; });
    const bool mayHide = anyOneSided && !eyes.empty();
    const bool lookedAtFromInside =
        std::any_of(eyes.begin(), eyes.end(), [&](CVec3 eye) { return IsInside(mesh.bounds, eye); });
    CShells shells = mayHide ? FindShells(mesh, numbers, batches) : CShells(0);

    std::array<CPovPart, 8> parts;
    ForEachFace(mesh, batches, [&](const CPovFace& face, const CPovBatch& batch) {
        if (IsDegenerate(numbers, face)) return;
        const bool hidden =
            mayHide && batch.oneSided && TurnsItsBack(mesh, face, eyes) &&
            (lookedAtFromInside || !shells.HidesItsInside(numbers.positionOf[face.corner[0]]));
        const bool normals = smooth && !batch.flat;
        CPovPart& part = parts[(hidden ? 4u : 0u) + (batch.mapped ? 2u : 0u) + (normals ? 1u : 0u)];
        part.hidden = hidden;
        part.texCoords = batch.mapped;
        part.normals = normals;
        part.faces.push_back(face);
    });
    std::vector<CPovPart> result;
    for (CPovPart& part : parts) {
        if (part.faces.empty()) continue;
        part.normals = part.normals && !AreFlat(numbers, part.faces);
        result.push_back(std::move(part));
    }
    return result;
}
