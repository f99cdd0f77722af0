// SPDX-License-Identifier: MIT
#include "model/read_obj/obj_smoothing.h"

#include <algorithm>
#include <bit>
#include <map>
#include <numeric>

namespace {

constexpr float kSameNormal = 0.9995f;  // 1.8 degrees: exporters round to three or four digits
constexpr float kSmoothEdge = 0.7071f;  // 45 degrees
// Places where more normals or edges meet than any surface has; beyond, faces are taken for flat.
constexpr std::size_t kMaxAtPlace = 64;
constexpr std::uint32_t kNone = UINT32_MAX;

/** Sets of faces that belong together. */
class CFaceSets {
  public:
    explicit CFaceSets(std::size_t faces) : m_parent(faces) {
        std::iota(m_parent.begin(), m_parent.end(), 0u);
    }

    std::uint32_t Root(std::uint32_t face) {
        while (m_parent[face] != face) face = m_parent[face] = m_parent[m_parent[face]];
        return face;
    }
    void Unite(std::uint32_t a, std::uint32_t b) {
        const std::uint32_t rootA = Root(a), rootB = Root(b);
        m_parent[std::max(rootA, rootB)] = std::min(rootA, rootB);
    }

  private:
    std::vector<std::uint32_t> m_parent;
};

/** Short lists of what was met at each place. */
template <class T>
class CAtPlaces {
  public:
    explicit CAtPlaces(std::size_t places) : m_first(places, kNone) {}

    /** The first entry at the place for which isSame holds, or null; then `fresh` is added. */
    template <class IsSame>
    T* FindOrAdd(std::size_t place, const T& fresh, IsSame isSame) {
        std::size_t steps = 0;
        for (std::uint32_t i = m_first[place]; i != kNone; i = m_next[i]) {
            if (isSame(m_entries[i])) return &m_entries[i];
            if (++steps == kMaxAtPlace) return nullptr;
        }
        m_next.push_back(m_first[place]);
        m_first[place] = static_cast<std::uint32_t>(m_entries.size());
        m_entries.push_back(fresh);
        return nullptr;
    }

  private:
    std::vector<std::uint32_t> m_first, m_next;
    std::vector<T> m_entries;
};

CVec3 FaceNormal(const CObjPiece& piece, const CObjPiece::CFace& face) {
    const CVec3 a = piece.points[face.points[0]], b = piece.points[face.points[1]],
                c = piece.points[face.points[2]];
    return Normalized(Cross(b - a, c - a));
}

std::vector<CVec3> FaceNormals(const CObjPiece& piece) {
    std::vector<CVec3> normals;
    normals.reserve(piece.faces.size());
    for (const CObjPiece::CFace& face : piece.faces) normals.push_back(FaceNormal(piece, face));
    return normals;
}

void UniteBySameNormals(const CObjPiece& piece, const std::vector<CVec3>& normals, CFaceSets& sets) {
    struct CMet {
        CVec3 normal;
        std::uint32_t face;
    };
    CAtPlaces<CMet> met(piece.points.size());
    for (std::uint32_t f = 0; f < piece.faces.size(); ++f) {
        for (std::size_t k = 0; k < 3; ++k) {
            const std::int32_t index = piece.cornerNormals[f * 3 + k];
            CVec3 normal = index >= 0 ? Normalized(normals[static_cast<std::size_t>(index)]) : CVec3{};
            if (normal == CVec3{}) normal = FaceNormal(piece, piece.faces[f]);
            const auto isSame = [&](const CMet& other) { return Dot(other.normal, normal) > kSameNormal; };
            const CMet* same = met.FindOrAdd(piece.places[piece.faces[f].points[k]], {normal, f}, isSame);
            if (same) sets.Unite(f, same->face);
        }
    }
}

void UniteAcrossSmoothEdges(const CObjPiece& piece, CFaceSets& sets) {
    struct CEdge {
        std::uint16_t end;
        std::uint32_t face;
    };
    const std::vector<CVec3> normals = FaceNormals(piece);
    CAtPlaces<CEdge> met(piece.points.size());
    for (std::uint32_t f = 0; f < piece.faces.size(); ++f) {
        for (std::size_t k = 0; k < 3; ++k) {
            const std::uint16_t a = piece.places[piece.faces[f].points[k]];
            const std::uint16_t b = piece.places[piece.faces[f].points[(k + 1) % 3]];
            const std::uint16_t end = std::max(a, b);
            const auto isSame = [&](const CEdge& edge) { return edge.end == end; };
            CEdge* edge = met.FindOrAdd(std::min(a, b), {end, f}, isSame);
            if (edge && Dot(normals[f], normals[edge->face]) > kSmoothEdge) sets.Unite(f, edge->face);
        }
    }
}

void UniteByNumbers(const CObjPiece& piece, CFaceSets& sets) {
    std::map<std::uint32_t, std::uint32_t> firstOfGroup;
    for (std::uint32_t f = 0; f < piece.faces.size(); ++f) {
        if (piece.faces[f].smoothing == 0) continue;
        const auto [first, isNew] = firstOfGroup.try_emplace(piece.faces[f].smoothing, f);
        if (!isNew) sets.Unite(f, first->second);
    }
}

/** Gives each set of faces the lowest bit that no set has which it touches. A set of one face stays flat. */
void ColorSets(CObjPiece& piece, CFaceSets& sets) {
    std::vector<std::uint32_t> order(piece.faces.size()), root(piece.faces.size());
    for (std::uint32_t f = 0; f < root.size(); ++f) root[f] = sets.Root(f);
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return root[a] < root[b]; });

    std::vector<std::uint32_t> usedAtPlace(piece.points.size(), 0);
    const auto forEachPlace = [&](std::size_t first, std::size_t last, auto use) {
        for (std::size_t i = first; i < last; ++i) {
            for (const std::uint16_t point : piece.faces[order[i]].points)
                use(usedAtPlace[piece.places[point]]);
        }
    };
    for (std::size_t first = 0, last = 0; first < order.size(); first = last) {
        while (last < order.size() && root[order[last]] == root[order[first]]) ++last;
        std::uint32_t mask = 0;
        if (last - first > 1) {
            std::uint32_t taken = 0;
            forEachPlace(first, last, [&](std::uint32_t used) { taken |= used; });
            mask = 1u << (std::countr_one(taken) % 32);
            forEachPlace(first, last, [&](std::uint32_t& used) { used |= mask; });
        }
        for (std::size_t i = first; i < last; ++i) piece.faces[order[i]].smoothing = mask;
    }
}

}  // namespace

void AssignSmoothing(CObjPiece& piece, const std::vector<CVec3>& normals, EObjSmoothing source) {
    const bool fits = std::all_of(piece.faces.begin(), piece.faces.end(),
                                  [](const CObjPiece::CFace& face) { return face.smoothing <= 32; });
    if (source == EObjSmoothing::Groups && fits) {
        for (CObjPiece::CFace& face : piece.faces) {
            if (face.smoothing != 0) face.smoothing = 1u << (face.smoothing - 1);
        }
        return;
    }
    CFaceSets sets(piece.faces.size());
    switch (source) {
        case EObjSmoothing::Groups:
            UniteByNumbers(piece, sets);
            break;
        case EObjSmoothing::Normals:
            UniteBySameNormals(piece, normals, sets);
            break;
        case EObjSmoothing::Creases:
            UniteAcrossSmoothEdges(piece, sets);
            break;
    }
    ColorSets(piece, sets);
}
