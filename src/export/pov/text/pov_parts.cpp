// SPDX-License-Identifier: MIT
#include "export/pov/text/pov_parts.h"

#include <algorithm>
#include <array>
#include <map>
#include <numeric>
#include <tuple>

#include "base/CHashIndex.h"

namespace {

/** The connected pieces of a mesh. A piece is closed if its triangles use each edge equally often in both
 * directions. Sums of hashes check this without a table of edges. */
class CShells {
  public:
    explicit CShells(std::size_t positions)
        : m_parent(positions), m_sum(positions), m_volume(positions), m_showsInside(positions) {
        std::iota(m_parent.begin(), m_parent.end(), 0u);
    }

    void Join(std::uint32_t a, std::uint32_t b) { m_parent[Root(a)] = Root(b); }
    /** To be called after all joining, once for each edge of each triangle. */
    void CountEdge(std::uint32_t a, std::uint32_t b) {
        if (a != b) m_sum[Root(a)] += a < b ? Mixed(a, b) : 0 - Mixed(b, a);
    }
    /** To be called after all joining, once for each triangle. volume: of the tetrahedron with a fixed point.
     * A second triangle at the same place is the back of a thin sheet, which its front does not hide. */
    void CountFace(std::array<std::uint32_t, 3> corner, double volume, bool seesThrough) {
        const std::uint32_t root = Root(corner[0]);
        m_volume[root] += volume;
        std::sort(corner.begin(), corner.end());
        const auto fresh = static_cast<std::uint32_t>(m_faces.size());
        const bool isNew = m_places.FindOrAdd(Mixed(Mixed(corner[0], corner[1]), corner[2]), fresh,
                                              [&](std::uint32_t i) { return m_faces[i] == corner; }) == fresh;
        if (isNew) m_faces.push_back(corner);
        if (seesThrough || !isNew) m_showsInside[root] = true;
    }
    /** To be called after all counting. */
    [[nodiscard]] bool HidesItsInside(std::uint32_t a) {
        const std::uint32_t root = Root(a);
        // A closed piece of negative volume, a room, faces inwards: the eye looks into it through the backs
        // of walls.
        return m_sum[root] == 0 && m_volume[root] > 0 && !m_showsInside[root];
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
    std::vector<double> m_volume;
    std::vector<bool> m_showsInside;
    std::vector<std::array<std::uint32_t, 3>> m_faces;
    CHashIndex m_places;  ///< of m_faces
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

/** Six times the volume that a triangle spans with a point: positive where the point lies
 * before its front. */
double VolumeTo(const CPreparedMesh& mesh, const CPovFace& face, CVec3 point) {
    std::array<std::array<double, 3>, 3> from{};
    for (std::size_t i = 0; i < 3; ++i) {
        const float(&at)[3] = mesh.vertices[face.corner[i]].position;
        from[i] = {static_cast<double>(point.x) - static_cast<double>(at[0]),
                   static_cast<double>(point.y) - static_cast<double>(at[1]),
                   static_cast<double>(point.z) - static_cast<double>(at[2])};
    }
    const auto& [u, v, w] = from;
    return u[0] * (v[1] * w[2] - v[2] * w[1]) + u[1] * (v[2] * w[0] - v[0] * w[2]) +
           u[2] * (v[0] * w[1] - v[1] * w[0]);
}

/** The eyes that a triangle turns its back to. */
std::uint32_t BackTo(const CPreparedMesh& mesh, const CPovFace& face, std::span<const CVec3> eyes) {
    std::uint32_t mask = 0;
    if (eyes.size() > kMostEyes) {
        const auto isBehind = [&](CVec3 eye) { return VolumeTo(mesh, face, eye) < 0; };
        return std::all_of(eyes.begin(), eyes.end(), isBehind) ? UINT32_MAX : 0;
    }
    for (std::size_t i = 0; i < eyes.size(); ++i) {
        if (VolumeTo(mesh, face, eyes[i]) < 0) mask |= 1u << i;
    }
    return mask;
}

/** The pieces of the mesh, or nothing when none of them may hide its inside. */
CShells FindShells(const CPreparedMesh& mesh, const CPovMesh& numbers, std::span<const CPovBatch> batches) {
    CShells shells(numbers.positions.size());
    const CVec3 middle = mesh.bounds.Center();
    const auto at = [&](const CPovFace& face, std::size_t i) {
        return numbers.positionOf[face.corner[i % 3]];
    };
    ForEachFace(mesh, batches, [&](const CPovFace& face, const CPovBatch&) {
        shells.Join(at(face, 0), at(face, 1));
        shells.Join(at(face, 0), at(face, 2));
    });
    ForEachFace(mesh, batches, [&](const CPovFace& face, const CPovBatch& batch) {
        for (std::size_t i = 0; i < 3; ++i) shells.CountEdge(at(face, i), at(face, i + 1));
        shells.CountFace({at(face, 0), at(face, 1), at(face, 2)}, -VolumeTo(mesh, face, middle),
                         batch.seesThrough);
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

    using CKey = std::tuple<std::uint32_t, bool, bool, std::uint32_t>;
    std::map<CKey, CPovPart> parts;
    ForEachFace(mesh, batches, [&](const CPovFace& face, const CPovBatch& batch) {
        if (IsDegenerate(numbers, face)) return;
        const bool open = mayHide && batch.oneSided &&
                          (lookedAtFromInside || !shells.HidesItsInside(numbers.positionOf[face.corner[0]]));
        const std::uint32_t hiddenFrom = open ? BackTo(mesh, face, eyes) : 0;
        const bool normals = smooth && !batch.flat;
        const std::uint32_t unlit = normals && eyes.size() <= kMostEyes ? batch.unlit : kNoTexture;
        CPovPart& part = parts[CKey{hiddenFrom, batch.mapped, normals, unlit}];
        part.faces.push_back(face);
    });
    std::vector<CPovPart> result;
    for (auto& [key, part] : parts) {
        std::tie(part.hiddenFrom, part.texCoords, part.normals, part.unlit) = key;
        if (part.normals && AreFlat(numbers, part.faces)) {
            part.normals = false;
            part.unlit = kNoTexture;
        }
        result.push_back(std::move(part));
    }
    return result;
}
