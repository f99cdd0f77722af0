// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/prepare/CPreparedScene.h"

/** A coarser form of a mesh. Its batches are those of the mesh, in the same order; some may be empty. */
struct CMeshLevel {
    std::vector<CPreparedVertex> vertices;  ///< empty: the indices are of the mesh's own vertices
    std::vector<CVec2> texCoords;           ///< as many as vertices, or none
    std::vector<std::uint16_t> indices16;   ///< exactly one of the two is filled, as in a mesh
    std::vector<std::uint32_t> indices32;
    std::vector<CPreparedBatch> batches;
    std::vector<float> grains;  ///< see GrainsOf
    float error = 0;            ///< how far the surface may have moved, in the mesh's units

    [[nodiscard]] bool HasOwnVertices() const { return !vertices.empty(); }
    [[nodiscard]] std::uint32_t IndexCount() const {
        return static_cast<std::uint32_t>(indices16.empty() ? indices32.size() : indices16.size());
    }
    [[nodiscard]] std::size_t Bytes() const {
        return vertices.size() * sizeof(CPreparedVertex) + texCoords.size() * sizeof(CVec2) +
               indices16.size() * sizeof(std::uint16_t) + indices32.size() * sizeof(std::uint32_t);
    }
};

/** The coarser forms of one mesh, finest first; their errors grow. */
struct CMeshLevels {
    std::vector<CMeshLevel> levels;
    std::vector<float> grains;  ///< of the mesh itself
};
