// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/math/CBox.h"
#include "base/math/CVec.h"

struct CPreparedMesh;
struct CPreparedVertex;

/** A run of indices: the triangles of one primitive. */
struct CGltfRange {
    std::uint32_t first = 0, count = 0;
    friend bool operator==(const CGltfRange&, const CGltfRange&) = default;
};

/** The vertices and indices of one mesh, as the streams of a CGlbFile take them. */
struct CGltfGeometry {
    static constexpr int kPositionBits = 14, kNormalBits = 8, kTexCoordBits = 12;

    std::uint32_t vertexCount = 0;
    bool hasWideIndices = false;
    std::vector<std::byte> positions, normals, texCoords, indices;  ///< texCoords may be empty
    std::vector<CGltfRange> ranges;                                 ///< in indices
    std::array<double, 3> min{}, max{};                             ///< of the positions as they are written
    /** Written positions times scale plus offset are the file's. */
    CVec3 offset;
    float scale = 1;
    std::vector<std::uint32_t> order;  ///< for each vertex its number in the prepared mesh; empty: the same

    /** Of these ranges of the mesh. packs: quantized, and reordered so that it packs well. box: holds the vertices,
     * and those of all shapes that they change into. */
    [[nodiscard]] static CGltfGeometry Make(const CPreparedMesh& mesh, std::span<const CGltfRange> ranges,
                                            bool packs, const CBox& box);
};

/** How another shape of the same vertices differs from them, as the streams take it. */
struct CGltfDeltas {
    std::vector<std::byte> positions, normals;
    std::array<double, 3> min{}, max{};  ///< of the positions

    /** shape has as many vertices as the mesh that geometry was made of. */
    [[nodiscard]] static CGltfDeltas Make(const CGltfGeometry& geometry, const CPreparedMesh& mesh,
                                          std::span<const CPreparedVertex> shape, bool packs);
};
