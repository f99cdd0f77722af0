// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "model/prepare/CPreparedScene.h"

/** Nearest and farthest depth of a run of triangles; min > max when it is empty. */
struct CDepthSpan {
    float min = 1e30f;
    float max = -1e30f;

    [[nodiscard]] float Middle() const { return (min + max) * 0.5f; }
};

/** The arrays of a mesh or of a level of it, for sorting: one of the two spans of indices is filled. Refers to them. */
struct CSortSource {
    std::span<const CPreparedVertex> vertices;
    std::span<const std::uint16_t> indices16;
    std::span<const std::uint32_t> indices32;

    /** Where the indices are: other for each mesh and level. Only compared. */
    [[nodiscard]] const void* Identity() const {
        return indices16.empty() ? static_cast<const void*>(indices32.data()) : indices16.data();
    }
};

/** Writes the triangles of indices to ordered, the farthest middle first. The depth of a point p is row . (p,
 * 1). Triangles whose depths differ by less than 1/65,536 of the whole range keep their order. Indices must
 * be valid. Returns the range of depths. */
template <class TIndex>
CDepthSpan OrderBackToFront(std::span<const CPreparedVertex> vertices, std::span<const TIndex> indices,
                            const std::array<double, 4>& row, std::vector<TIndex>& ordered);
