// SPDX-License-Identifier: MIT
#include "model/read_obj/CObjMeshBuilder.h"

#include <lib3ds/mesh.h>

#include <algorithm>
#include <numeric>

#include "base/math/point_hash.h"

namespace {

using point_hash::HashOf;

constexpr std::size_t kEarBudget = 200'000'000;  // corner tests; well under a second

CVec3 ZUp(CVec3 p) {
    return {p.x, -p.z, p.y};
}

/** The edges of a triangle that are edges of its polygon; the cuts are not drawn in wire pictures. */
std::uint16_t VisibleEdges(const CTriangle& t, std::uint32_t corners) {
    const auto isEdge = [corners](std::uint32_t a, std::uint32_t b) {
        return (a + 1) % corners == b || (b + 1) % corners == a;
    };
    return static_cast<std::uint16_t>((isEdge(t[0], t[1]) ? LIB3DS_FACE_FLAG_VIS_AB : 0) |
                                      (isEdge(t[1], t[2]) ? LIB3DS_FACE_FLAG_VIS_BC : 0) |
                                      (isEdge(t[2], t[0]) ? LIB3DS_FACE_FLAG_VIS_AC : 0));
}

}  // namespace

CObjMeshBuilder::CObjMeshBuilder(const CObjGeometry& geometry, bool keepNormals, CSink sink)
    : m_geometry(geometry),
      m_keepNormals(keepNormals && !geometry.cornerNormals.empty()),
      m_sink(std::move(sink)),
      m_earBudget(kEarBudget) {}

void CObjMeshBuilder::Build() {
    std::vector<std::uint32_t> order(m_geometry.segments.size());
    std::iota(order.begin(), order.end(), 0u);
    const auto groupOf = [this](std::uint32_t segment) { return m_geometry.segments[segment].group; };
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return groupOf(a) < groupOf(b); });
    for (std::size_t i = 0; i < order.size(); ++i) {
        AddSegment(order[i]);
        if (i + 1 == order.size() || groupOf(order[i + 1]) != groupOf(order[i])) Finish(groupOf(order[i]));
    }
}

void CObjMeshBuilder::AddSegment(std::size_t number) {
    const auto& segments = m_geometry.segments;
    const std::size_t end =
        number + 1 < segments.size() ? segments[number + 1].firstFace : m_geometry.faceEnds.size();
    for (std::size_t face = segments[number].firstFace; face < end; ++face) AddFace(face, segments[number]);
}

void CObjMeshBuilder::AddFace(std::size_t face, const CObjSegment& segment) {
    const std::uint32_t first = m_geometry.FaceBegin(face), count = m_geometry.faceEnds[face] - first;
    if (m_geometry.cornerPositions[first] < 0) return;
    if (count == 3) return AddTriangle(first, count, {0, 1, 2}, segment);
    m_polygon.clear();
    m_triangles.clear();
    for (std::uint32_t corner = first; corner < first + count; ++corner) {
        m_polygon.push_back(
            m_geometry.positions[static_cast<std::size_t>(m_geometry.cornerPositions[corner])]);
    }
    TriangulatePolygon(m_polygon, m_earBudget, m_triangles);
    for (const CTriangle& triangle : m_triangles) AddTriangle(first, count, triangle, segment);
}

void CObjMeshBuilder::AddTriangle(std::uint32_t firstCorner, std::uint32_t corners, const CTriangle& triangle,
                                  const CObjSegment& segment) {
    const auto positionOf = [&](std::size_t k) {
        return m_geometry
            .positions[static_cast<std::size_t>(m_geometry.cornerPositions[firstCorner + triangle[k]])];
    };
    const CVec3 a = positionOf(0), b = positionOf(1), c = positionOf(2);
    if (a == b || b == c || c == a) return;
    if (m_piece.points.size() + 3 > CObjPiece::kMaxPoints || m_piece.faces.size() == CObjPiece::kMaxFaces) {
        Finish(segment.group);
    }
    CObjPiece::CFace face{};
    for (std::size_t k = 0; k < 3; ++k) face.points[k] = PointOf(firstCorner + triangle[k]);
    face.flags = VisibleEdges(triangle, corners);
    face.material = segment.material;
    face.smoothing = segment.smoothing;
    m_piece.faces.push_back(face);
    if (!m_keepNormals) return;
    for (const std::uint32_t corner : triangle) {
        m_piece.cornerNormals.push_back(m_geometry.cornerNormals[firstCorner + corner]);
    }
}

std::uint16_t CObjMeshBuilder::PointOf(std::uint32_t corner) {
    const CCorner wanted{m_geometry.cornerPositions[corner],
                         m_geometry.cornerTexCoords.empty() ? -1 : m_geometry.cornerTexCoords[corner]};
    const auto key =
        (static_cast<std::uint64_t>(wanted.position) << 32) | static_cast<std::uint32_t>(wanted.texCoord);
    const auto fresh = static_cast<std::uint32_t>(m_corners.size());
    const std::uint32_t number = m_byCorner.FindOrAdd(key, fresh, [&](std::uint32_t other) {
        return m_corners[other].position == wanted.position && m_corners[other].texCoord == wanted.texCoord;
    });
    if (number != fresh) return m_cornerPoints[number];
    m_corners.push_back(wanted);
    m_anyTexel = m_anyTexel || wanted.texCoord >= 0;
    const CVec3 position = ZUp(m_geometry.positions[static_cast<std::size_t>(wanted.position)]);
    const CVec2 texel =
        wanted.texCoord >= 0 ? m_geometry.texCoords[static_cast<std::size_t>(wanted.texCoord)] : CVec2{};
    m_cornerPoints.push_back(AddPoint(position, texel));
    return m_cornerPoints.back();
}

std::uint16_t CObjMeshBuilder::AddPoint(CVec3 position, CVec2 texel) {
    const auto fresh = static_cast<std::uint32_t>(m_piece.points.size());
    const std::uint32_t point = m_byPoint.FindOrAdd(HashOf(position, texel), fresh, [&](std::uint32_t other) {
        return m_piece.points[other] == position && m_piece.texels[other].x == texel.x &&
               m_piece.texels[other].y == texel.y;
    });
    if (point != fresh) return static_cast<std::uint16_t>(point);
    m_piece.points.push_back(position);
    m_piece.texels.push_back(texel);
    const std::uint32_t place = m_byPlace.FindOrAdd(
        HashOf(position), fresh, [&](std::uint32_t other) { return m_piece.points[other] == position; });
    m_piece.places.push_back(static_cast<std::uint16_t>(place));
    return static_cast<std::uint16_t>(fresh);
}

void CObjMeshBuilder::Finish(std::uint32_t group) {
    if (!m_anyTexel) m_piece.texels.clear();
    if (!m_piece.faces.empty()) m_sink(group, std::move(m_piece));
    m_piece = {};
    m_anyTexel = false;
    m_corners.clear();
    m_cornerPoints.clear();
    m_byCorner.Clear();
    m_byPoint.Clear();
    m_byPlace.Clear();
}
