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

/** The triangles of indices in order of falling depth of their middles, where the depth of a point p is row .
 * (p, 1). Equal depths (to 1/65,536 of the whole) keep their order. Indices must be valid. */
template <class TIndex>
CDepthSpan OrderBackToFront(std::span<const CPreparedVertex> vertices, std::span<const TIndex> indices,
                            const std::array<double, 4>& row, std::vector<TIndex>& ordered);
