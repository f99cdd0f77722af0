// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <limits>

#include "base/math/CMatrix.h"

/** An axis-aligned box; empty until something is added. */
struct CBox {
    CVec3 min{std::numeric_limits<float>::max(), std::numeric_limits<float>::max(),
              std::numeric_limits<float>::max()};
    CVec3 max{-std::numeric_limits<float>::max(), -std::numeric_limits<float>::max(),
              -std::numeric_limits<float>::max()};

    [[nodiscard]] bool IsEmpty() const { return min.x > max.x; }
    void Add(CVec3 p) {
        min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
        max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
    }
    void Add(const CBox& other) {
        if (!other.IsEmpty()) {
            Add(other.min);
            Add(other.max);
        }
    }
    [[nodiscard]] CVec3 Center() const { return IsEmpty() ? CVec3{} : (min + max) * 0.5f; }
    /** One of the eight corners, 0..7: bits 0, 1 and 2 of i choose max in place of min for x, y and z. */
    [[nodiscard]] CVec3 Corner(unsigned i) const {
        return {(i & 1u) ? max.x : min.x, (i & 2u) ? max.y : min.y, (i & 4u) ? max.z : min.z};
    }
    /** The axis-aligned box round the eight transformed corners; empty stays empty. */
    [[nodiscard]] CBox Transformed(const CMat4& matrix) const {
        CBox result;
        if (IsEmpty()) return result;
        for (unsigned corner = 0; corner < 8; ++corner) result.Add(matrix.TransformPoint(Corner(corner)));
        return result;
    }
};
