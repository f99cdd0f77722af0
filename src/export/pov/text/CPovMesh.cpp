// SPDX-License-Identifier: MIT
#include "export/pov/text/CPovMesh.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "base/CHashIndex.h"

namespace {

/** Positions are rounded to a millionth of the extent; with five digits silhouettes would differ visibly. */
constexpr double kDigits = 6;
constexpr int kMostDecimals = 9;
/** Keeps whole numbers far from overflow, and their products too. */
constexpr double kLargest = 1e15;

template <std::size_t N>
class CWelder {
  public:
    using CEntry = std::array<std::int64_t, N>;
    explicit CWelder(std::vector<CEntry>& entries) : m_entries(entries) {}

    std::uint32_t Add(const CEntry& entry) {
        std::uint64_t key = 0;
        for (const std::int64_t value : entry) {
            key = (key ^ static_cast<std::uint64_t>(value)) * 0x9E3779B97F4A7C15u;
            key ^= key >> 29;
        }
        const auto fresh = static_cast<std::uint32_t>(m_entries.size());
        const std::uint32_t found =
            m_index.FindOrAdd(key, fresh, [&](std::uint32_t i) { return m_entries[i] == entry; });
        if (found == fresh) m_entries.push_back(entry);
        return found;
    }

  private:
    std::vector<CEntry>& m_entries;
    CHashIndex m_index;
};

std::int64_t Whole(float value, double unitsPerOne) {
    const double scaled = static_cast<double>(value) * unitsPerOne;
    return std::isfinite(scaled) ? std::llrint(std::clamp(scaled, -kLargest, kLargest)) : 0;
}

using CExact = std::array<double, 3>;

CExact Difference(const std::array<std::int64_t, 3>& a, const std::array<std::int64_t, 3>& b) {
    return {static_cast<double>(a[0] - b[0]), static_cast<double>(a[1] - b[1]),
            static_cast<double>(a[2] - b[2])};
}

CExact FaceNormal(const CPovMesh& mesh, const CPovFace& face) {
    const auto& p = mesh.positions[mesh.positionOf[face.corner[0]]];
    const CExact u = Difference(mesh.positions[mesh.positionOf[face.corner[1]]], p);
    const CExact v = Difference(mesh.positions[mesh.positionOf[face.corner[2]]], p);
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

double Dot(const CExact& a, const CExact& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

bool IsFlat(const CPovMesh& mesh, const CPovFace& face) {
    constexpr double kAlike = 0.99999;  // a quarter of a degree
    const CExact plane = FaceNormal(mesh, face);
    const double length = std::sqrt(Dot(plane, plane));
    return std::all_of(face.corner.begin(), face.corner.end(), [&](std::uint32_t corner) {
        const auto& n = mesh.normals[mesh.normalOf[corner]];
        const CExact normal{static_cast<double>(n[0]), static_cast<double>(n[1]), static_cast<double>(n[2])};
        return Dot(plane, normal) >= kAlike * length * std::sqrt(Dot(normal, normal));
    });
}

}  // namespace

CPovMesh CPovMesh::Make(const CPreparedMesh& mesh, float extent, const CMat4* transform) {
    CPovMesh result;
    const double size = std::isfinite(extent) && extent > 0 ? static_cast<double>(extent) : 1.0;
    const int places = static_cast<int>(std::ceil(kDigits - std::log10(size)));
    result.decimals = std::clamp(places, 0, kMostDecimals);
    const double unitsPerOne = std::pow(10.0, places);
    result.enlarged = static_cast<float>(std::pow(10.0, places - result.decimals));

    constexpr float kNormalUnits = 1e4f;
    const double texCoordUnits = std::pow(10.0, kUvDecimals);
    CWelder<3> positions(result.positions), normals(result.normals);
    CWelder<2> texCoords(result.texCoords);
    result.positionOf.reserve(mesh.vertices.size());
    result.normalOf.reserve(mesh.vertices.size());
    for (const CPreparedVertex& vertex : mesh.vertices) {
        const CVec3 p = transform ? transform->TransformPoint(vertex.Position()) : vertex.Position();
        result.positionOf.push_back(
            positions.Add({Whole(p.x, unitsPerOne), Whole(p.y, unitsPerOne), Whole(p.z, unitsPerOne)}));
        const CVec3 n = vertex.Normal() * kNormalUnits;
        std::array<std::int64_t, 3> normal{std::lrint(n.x), std::lrint(n.y), std::lrint(n.z)};
        if (normal == std::array<std::int64_t, 3>{}) normal[2] = 10000;  // POV-Ray warns of none at all
        result.normalOf.push_back(normals.Add(normal));
    }
    for (const CVec2& uv : mesh.texCoords) {
        result.texCoordOf.push_back(texCoords.Add({Whole(uv.x, texCoordUnits), Whole(uv.y, texCoordUnits)}));
    }
    return result;
}

bool IsDegenerate(const CPovMesh& mesh, const CPovFace& face) {
    const CExact normal = FaceNormal(mesh, face);
    return Dot(normal, normal) == 0;
}

bool HasNormalsBehind(const CPovMesh& mesh, const CPovFace& face) {
    const CExact plane = FaceNormal(mesh, face);
    double along = 0;
    for (const std::uint32_t corner : face.corner) {
        const auto& n = mesh.normals[mesh.normalOf[corner]];
        along +=
            Dot(plane, {static_cast<double>(n[0]), static_cast<double>(n[1]), static_cast<double>(n[2])});
    }
    return along < 0;
}

bool AreFlat(const CPovMesh& mesh, const std::vector<CPovFace>& faces) {
    return std::all_of(faces.begin(), faces.end(), [&](const CPovFace& face) { return IsFlat(mesh, face); });
}

void KeepEqualNormals(CPovMesh& mesh, std::vector<CPovFace>& faces) {
    std::unordered_map<std::uint32_t, std::uint32_t> doubles;
    for (CPovFace& face : faces) {
        const auto& [a, b, c] = face.corner;
        const bool equal = mesh.normalOf[a] == mesh.normalOf[b] && mesh.normalOf[b] == mesh.normalOf[c];
        if (!equal || IsFlat(mesh, face)) continue;
        const auto [place, isNew] =
            doubles.try_emplace(a, static_cast<std::uint32_t>(mesh.positionOf.size()));
        if (isNew) {
            std::array<std::int64_t, 3> normal = mesh.normals[mesh.normalOf[a]];
            normal[2] += normal[2] > 0 ? -1 : 1;
            mesh.positionOf.push_back(mesh.positionOf[a]);
            mesh.normalOf.push_back(static_cast<std::uint32_t>(mesh.normals.size()));
            if (!mesh.texCoordOf.empty()) mesh.texCoordOf.push_back(mesh.texCoordOf[a]);
            mesh.normals.push_back(normal);
        }
        face.corner[0] = place->second;
    }
}
