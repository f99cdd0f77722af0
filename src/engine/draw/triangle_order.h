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

/** Writes the triangles of indices to ordered, the farthest middle first. The depth of a point p is row . (p,
 * 1). Triangles whose depths differ by less than 1/65,536 of the whole range keep their order. Indices must
 * be valid. Returns the range of depths. */
template <class TIndex>
CDepthSpan OrderBackToFront(std::span<const CPreparedVertex> vertices, std::span<const TIndex> indices,
                            const std::array<double, 4>& row, std::vector<TIndex>& ordered);
