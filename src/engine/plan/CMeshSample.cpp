// SPDX-License-Identifier: MIT
#include "engine/plan/CMeshSample.h"

#include <cmath>

#include "model/prepare/CPreparedScene.h"

namespace {

std::array<CVec3, 3> CornersOf(const CPreparedMesh& mesh, const CPreparedBatch& batch,
                               std::uint32_t triangle) {
    const auto corner = [&](std::uint32_t c) {
        return mesh.vertices[mesh.Index(batch.firstIndex + 3 * triangle + c)].Position();
    };
    return {corner(0), corner(1), corner(2)};
}

/** For each triangle its area; 0 where that is not a number. */
std::vector<float> AreasOf(const CPreparedMesh& mesh, const CPreparedBatch& batch) {
    std::vector<float> areas(batch.indexCount / 3);
    for (std::uint32_t t = 0; t < areas.size(); ++t) {
        const auto [a, b, c] = CornersOf(mesh, batch, t);
        const float area = Length(Cross(b - a, c - a)) / 2;
        areas[t] = std::isfinite(area) ? area : 0;
    }
    return areas;
}

}  // namespace

CMeshSample::CMeshSample(const CPreparedMesh& mesh, std::uint32_t most) {
    for (const CPreparedBatch& batch : mesh.batches) {
        Add(mesh, batch, most);
        m_ends.push_back(static_cast<std::uint32_t>(m_triangles.size()));
    }
}

void CMeshSample::Add(const CPreparedMesh& mesh, const CPreparedBatch& batch, std::uint32_t most) {
    const std::uint32_t count = batch.indexCount / 3;
    if (count <= most) {
        for (std::uint32_t t = 0; t < count; ++t) m_triangles.push_back({CornersOf(mesh, batch, t), 1});
        return;
    }
    const std::vector<float> areas = AreasOf(mesh, batch);
    double area = 0;
    for (const float each : areas) area += static_cast<double>(each);
    double passed = 0, next = 0.5;  // of the sum of all chances, which is most
    for (std::uint32_t t = 0; t < count; ++t) {
        const double byArea = area > 0 ? static_cast<double>(areas[t]) / area : 1.0 / count;
        const double chance = most * (byArea + 1.0 / count) / 2;
        passed += chance;
        if (passed <= next) continue;
        // Where a triangle is chosen several times it stands for itself, once.
        const double times = std::ceil(passed - next);
        m_triangles.push_back({CornersOf(mesh, batch, t), static_cast<float>(times / chance)});
        next += times;
    }
}

std::span<const CSampleTriangle> CMeshSample::OfBatch(std::size_t batch) const {
    if (batch >= m_ends.size()) return {};
    const std::uint32_t first = batch == 0 ? 0 : m_ends[batch - 1];
    return std::span(m_triangles).subspan(first, m_ends[batch] - first);
}
