// SPDX-License-Identifier: MIT
#include "model/coarse/CCoarseMesh.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "model/scene/CScene.h"
#include "model/scene/mesh_access.h"

namespace {

std::int16_t Snorm(float value) {
    return static_cast<std::int16_t>(std::lrint(value * 32767.0f));
}

/** So many that a surface leaves about that share of its faces, and no fewer than show a shape. */
float CellsAlong(std::size_t faces, float share, float most) {
    return std::clamp(std::sqrt(static_cast<float>(faces) * share) / 2, 4.0f, most);
}

}  // namespace

CCoarseMesh::CCoarseMesh(const CMeshView& view, const CBox& bounds, float share,
                         std::uint32_t defaultMaterial)
    : m_view(view),
      m_defaultMaterial(defaultMaterial),
      m_flip(view.pointsUnflipped ? CMat4{} : FlipOf(view.matrix)),
      m_flips(!(m_flip == CMat4{})),
      m_origin(bounds.min) {
    const CVec3 extent = bounds.max - bounds.min;
    const float longest = std::max({extent.x, extent.y, extent.z});
    if (longest > 0 && std::isfinite(longest))
        m_cellsAUnit = CellsAlong(view.faceCount, share, static_cast<float>(kMostCells)) / longest;
    const auto along = [this](float length) {
        return std::clamp(static_cast<std::uint32_t>(length * m_cellsAUnit) + 1, 1u, kMostCells);
    };
    if (m_cellsAUnit > 0) m_size = {along(extent.x), along(extent.y), along(extent.z)};
    m_grid.assign(std::size_t{m_size[0]} * m_size[1] * m_size[2], kNone);
    m_cellOfPoint.assign(view.pointCount, kNone);
    m_reach.fill(-std::numeric_limits<float>::infinity());
}

void CCoarseMesh::Fill(CPreparedMesh& mesh, const std::vector<bool>& leftOut) {
    CollectFaces(leftOut);
    SumNormals();
    mesh.area = m_twiceArea / 2;
    EmitVertices(mesh);
    EmitFaces(mesh);
}

std::uint16_t CCoarseMesh::CellOf(std::uint16_t point) {
    std::uint16_t& known = m_cellOfPoint[point];
    if (known != kNone) return known;
    const CVec3 read = PointOf(m_view, point);
    const CVec3 at = m_flips ? m_flip.TransformPoint(read) : read;
    const CVec3 place = (at - m_origin) * m_cellsAUnit;
    const auto index = [](float p, std::uint32_t size) {
        return static_cast<std::uint32_t>(std::clamp(p, 0.0f, static_cast<float>(size - 1)));
    };
    std::uint16_t& cell =
        m_grid[(std::size_t{index(place.z, m_size[2])} * m_size[1] + index(place.y, m_size[1])) * m_size[0] +
               index(place.x, m_size[0])];
    if (cell == kNone) {
        cell = static_cast<std::uint16_t>(m_cells.size());
        m_cells.emplace_back();
    }
    m_cells[cell].sum = m_cells[cell].sum + at;
    ++m_cells[cell].points;
    KeepIfExtreme(at);
    return known = cell;
}

void CCoarseMesh::KeepIfExtreme(CVec3 p) {
    const std::array<float, 7> along{
        p.x, p.y, p.z, p.x + p.y + p.z, p.x + p.y - p.z, p.x - p.y + p.z, p.y + p.z - p.x};
    for (std::size_t i = 0; i < along.size(); ++i) {
        if (along[i] > m_reach[i]) {
            m_reach[i] = along[i];
            m_extremes[i] = p;
        }
        if (-along[i] > m_reach[i + 7]) {
            m_reach[i + 7] = -along[i];
            m_extremes[i + 7] = p;
        }
    }
}

void CCoarseMesh::CollectFaces(const std::vector<bool>& leftOut) {
    for (std::size_t i = 0; i < m_view.faceCount; ++i) {
        const CFaceIndices face = FaceOf(m_view, i);
        if (face.a == face.b || face.b == face.c || face.a == face.c) continue;
        const std::uint16_t a = CellOf(face.a), b = CellOf(face.b), c = CellOf(face.c);
        if (a == b || b == c || a == c) continue;
        std::uint32_t material = m_view.faceMaterials.empty() ? m_defaultMaterial : m_view.faceMaterials[i];
        if (material == CMeshView::kNoMaterial) material = m_defaultMaterial;
        if (!leftOut[material]) m_faces.push_back({{a, b, c}, static_cast<std::uint16_t>(material)});
    }
    for (CCell& cell : m_cells) cell.sum = cell.sum * (1 / cell.points);
}

void CCoarseMesh::SumNormals() {
    for (const CFace& face : m_faces) {
        const auto [a, b, c] = face.corners;
        const CVec3 normal = Cross(m_cells[b].sum - m_cells[a].sum, m_cells[c].sum - m_cells[a].sum);
        m_twiceArea += static_cast<double>(Length(normal));
        for (const std::uint16_t corner : face.corners)
            m_cells[corner].normal = m_cells[corner].normal + normal;
    }
}

void CCoarseMesh::EmitVertices(CPreparedMesh& mesh) const {
    mesh.vertices.reserve(m_cells.size());
    for (const CCell& cell : m_cells) {
        const CVec3 n = Normalized(cell.normal);
        mesh.vertices.push_back(
            {{cell.sum.x, cell.sum.y, cell.sum.z}, {Snorm(n.x), Snorm(n.y), Snorm(n.z), 0}});
    }
    if (m_cells.empty()) return;
    for (const CVec3 p : m_extremes) mesh.vertices.push_back({{p.x, p.y, p.z}, {}});
}

void CCoarseMesh::EmitFaces(CPreparedMesh& mesh) {
    std::stable_sort(m_faces.begin(), m_faces.end(),
                     [](const CFace& a, const CFace& b) { return a.material < b.material; });
    mesh.indices16.reserve(m_faces.size() * 3);
    for (const CFace& face : m_faces) {
        if (mesh.batches.empty() || mesh.batches.back().material != face.material)
            mesh.batches.push_back({face.material, static_cast<std::uint32_t>(mesh.indices16.size()), 0});
        mesh.indices16.insert(mesh.indices16.end(), face.corners.begin(), face.corners.end());
        mesh.batches.back().indexCount += 3;
    }
}
