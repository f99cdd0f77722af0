// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "base/math/geometry.h"

/** A 4x4 matrix in double, column by column. The products of camera, turn and node transforms are made
 * with it, so that a model far from the origin does not tremble: only the result, seen from the eye, is
 * rounded to float. */
struct CMatrix4d {
    std::array<double, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    [[nodiscard]] static CMatrix4d From(const float* columns);
    [[nodiscard]] static CMatrix4d From(const CMat4& matrix) { return From(matrix.m.data()); }
    [[nodiscard]] static CMatrix4d Translation(double x, double y, double z);

    [[nodiscard]] std::array<float, 16> ToFloat() const;
    /** The full inverse; of a singular matrix the identity, with *ok = false. */
    [[nodiscard]] CMatrix4d Inverse(bool* ok = nullptr) const;
    [[nodiscard]] double Determinant3() const;
    [[nodiscard]] std::array<double, 4> Transform(const std::array<double, 4>& v) const;
    /** Row 0..3: what gives x, y, z or w of a transformed point. */
    [[nodiscard]] std::array<double, 4> Row(std::size_t row) const {
        return {m[row], m[row + 4], m[row + 8], m[row + 12]};
    }
    /** The matrix (3x3, column by column) that turns normals, its largest entry 1; not of unit length. */
    [[nodiscard]] std::array<float, 9> NormalMatrix() const;

    /** a * b applies b first. */
    friend CMatrix4d operator*(const CMatrix4d& a, const CMatrix4d& b);
};
