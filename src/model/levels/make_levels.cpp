// SPDX-License-Identifier: MIT
#include "model/levels/make_levels.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "model/levels/CThinner.h"
#include "model/levels/CWorkMesh.h"

namespace {

constexpr std::uint32_t kNone = 0xFFFFFFFFu;

struct CStep {
    std::size_t part;  ///< one triangle of so many
    bool ownVertices;  ///< sparse reading of the mesh's vertices costs more than it saves
};
constexpr std::array<CStep, 6> kSteps{
    {{4, false}, {8, false}, {16, true}, {32, true}, {64, true}, {256, true}}};
constexpr std::size_t kLeastTriangles = 24;  ///< of a level

std::size_t BytesOf(const CPreparedMesh& mesh) {
    return mesh.vertices.size() * sizeof(CPreparedVertex) + mesh.texCoords.size() * sizeof(CVec2) +
           mesh.indices16.size() * sizeof(std::uint16_t) + mesh.indices32.size() * sizeof(std::uint32_t);
}

void StoreIndices(CMeshLevel& level, std::vector<std::uint32_t> indices, std::size_t vertices) {
    if (vertices <= 65'536) {
        level.indices16.reserve(indices.size());
        for (const std::uint32_t index : indices)
            level.indices16.push_back(static_cast<std::uint16_t>(index));
    } else {
        level.indices32 = std::move(indices);
    }
}

template <class TIndex>
std::vector<float> Grains(std::span<const CPreparedVertex> vertices, std::span<const TIndex> indices,
                          std::span<const CPreparedBatch> batches) {
    std::vector<float> grains;
    for (const CPreparedBatch& batch : batches) {
        double area = 0, sum = 0;
        for (std::uint32_t i = batch.firstIndex; i + 2 < batch.firstIndex + batch.indexCount; i += 3) {
            const CVec3 a = vertices[indices[i]].Position(), b = vertices[indices[i + 1]].Position(),
                        c = vertices[indices[i + 2]].Position();
            const CVec3 ab = b - a, ac = c - a, bc = c - b;
            const auto twice = static_cast<double>(Length(Cross(ab, ac)));
            area += twice;
            sum += twice * static_cast<double>(std::max({Dot(ab, ab), Dot(ac, ac), Dot(bc, bc)}));
        }
        grains.push_back(area > 0 ? static_cast<float>(std::sqrt(sum / area)) : 0.0f);
    }
    return grains;
}

/** The triangles of a work mesh as a level: corners of the mesh, in the mesh's batches. */
class CLevelBuilder {
  public:
    CLevelBuilder(const CPreparedMesh& mesh, const CWorkMesh& work) : m_mesh(mesh), m_work(work) {}

    [[nodiscard]] CMeshLevel Build(const std::vector<std::uint32_t>& triangles, bool ownVertices) const {
        CMeshLevel level;
        std::vector<std::uint32_t> indices = InBatches(triangles, level.batches);
        if (ownVertices) TakeVertices(level, indices);
        StoreIndices(level, std::move(indices), ownVertices ? level.vertices.size() : m_mesh.vertices.size());
        const std::vector<CPreparedVertex>& vertices = ownVertices ? level.vertices : m_mesh.vertices;
        level.grains = level.indices16.empty() ? GrainsOf(vertices, level.indices32, level.batches)
                                               : GrainsOf(vertices, level.indices16, level.batches);
        return level;
    }

  private:
    [[nodiscard]] std::vector<std::uint32_t> InBatches(const std::vector<std::uint32_t>& triangles,
                                                       std::vector<CPreparedBatch>& batches) const {
        batches = m_mesh.batches;
        for (CPreparedBatch& batch : batches) batch.indexCount = 0;
        for (std::size_t i = 0; i < triangles.size(); i += 3)
            batches[m_work.BatchOf(triangles[i])].indexCount += 3;
        std::uint32_t first = 0;
        std::vector<std::uint32_t> next;
        for (CPreparedBatch& batch : batches) {
            batch.firstIndex = first;
            next.push_back(first);
            first += batch.indexCount;
        }
        std::vector<std::uint32_t> indices(triangles.size());
        for (std::size_t i = 0; i < triangles.size(); i += 3) {
            std::uint32_t& at = next[m_work.BatchOf(triangles[i])];
            for (const std::uint32_t corner : m_work.CornersOf(m_mesh, &triangles[i])) indices[at++] = corner;
        }
        return indices;
    }

    /** Copies the vertices that the indices use, in the order of their use, and numbers the indices anew. */
    void TakeVertices(CMeshLevel& level, std::vector<std::uint32_t>& indices) const {
        std::vector<std::uint32_t> number(m_mesh.vertices.size(), kNone);
        for (std::uint32_t& index : indices) {
            std::uint32_t& known = number[index];
            if (known == kNone) {
                known = static_cast<std::uint32_t>(level.vertices.size());
                level.vertices.push_back(m_mesh.vertices[index]);
                if (!m_mesh.texCoords.empty()) level.texCoords.push_back(m_mesh.texCoords[index]);
            }
            index = known;
        }
    }

    const CPreparedMesh& m_mesh;
    const CWorkMesh& m_work;
};

bool SavesAFifth(std::size_t indices, std::size_t of) {
    return indices * 5 <= of * 4;
}

/** The levels of one work mesh, each made out of the one before. */
class CLevelChain {
  public:
    CLevelChain(const CPreparedMesh& mesh, const CWorkMesh& work, const std::atomic<bool>& stop)
        : m_mesh(mesh), m_work(work), m_stop(stop), m_memory(BytesOf(mesh) / 3) {}

    [[nodiscard]] std::vector<CMeshLevel> Make() {
        CThinner thinner(m_work.Places(), m_stop);
        std::vector<std::uint32_t> triangles = m_work.Triangles();
        std::size_t before = m_mesh.IndexCount();
        float sum = 0;
        for (const CStep& step : kSteps) {
            if (m_mesh.IndexCount() / 3 / step.part < kLeastTriangles) break;
            float error = 0;
            triangles = thinner.Thin(std::move(triangles), m_mesh.IndexCount() / 3 / step.part, error);
            sum += error;
            if (m_stop || triangles.empty()) break;
            if (!SavesAFifth(triangles.size(), before)) continue;
            if (!Keep(triangles, step.ownVertices, sum * m_work.Cell())) continue;
            before = triangles.size();
        }
        return std::move(m_levels);
    }

  private:
    /** False where the memory does not suffice. */
    bool Keep(const std::vector<std::uint32_t>& triangles, bool ownVertices, float error) {
        const CLevelBuilder builder(m_mesh, m_work);
        CMeshLevel level = builder.Build(triangles, ownVertices);
        if (ownVertices && level.Bytes() > m_memory) level = builder.Build(triangles, false);
        if (level.Bytes() > m_memory) return false;
        level.error = error;
        m_memory -= level.Bytes();
        m_levels.push_back(std::move(level));
        return true;
    }

    const CPreparedMesh& m_mesh;
    const CWorkMesh& m_work;
    const std::atomic<bool>& m_stop;
    std::size_t m_memory;
    std::vector<CMeshLevel> m_levels;
};

std::vector<CMeshLevel> LevelsBy(const CPreparedMesh& mesh, bool welded, const std::atomic<bool>& stop) {
    const CWorkMesh work(mesh, welded);
    if (work.IsEmpty() || stop) return {};
    return CLevelChain(mesh, work, stop).Make();
}

}  // namespace

std::vector<float> GrainsOf(std::span<const CPreparedVertex> vertices, std::span<const std::uint16_t> indices,
                            std::span<const CPreparedBatch> batches) {
    return Grains(vertices, indices, batches);
}

std::vector<float> GrainsOf(std::span<const CPreparedVertex> vertices, std::span<const std::uint32_t> indices,
                            std::span<const CPreparedBatch> batches) {
    return Grains(vertices, indices, batches);
}

CMeshLevels MakeLevels(const CPreparedMesh& mesh, const std::atomic<bool>& stop) {
    CMeshLevels result;
    if (mesh.IndexCount() / 3 < kLeastTrianglesForLevels || mesh.vertices.empty()) return result;
    result.grains = mesh.indices16.empty() ? GrainsOf(mesh.vertices, mesh.indices32, mesh.batches)
                                           : GrainsOf(mesh.vertices, mesh.indices16, mesh.batches);
    result.levels = LevelsBy(mesh, false, stop);
    // Where each face has corners of its own, as without smoothing, nothing moves until they are welded.
    if (!result.levels.empty() && result.levels.front().IndexCount() * 2 <= mesh.IndexCount()) return result;
    std::vector<CMeshLevel> welded = LevelsBy(mesh, true, stop);
    if (!welded.empty()) result.levels = std::move(welded);
    return result;
}
