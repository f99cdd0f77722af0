// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/math/CVec.h"

/** A 4x4 matrix stored column by column, as glMultMatrix takes it; m[12..14] is the translation. A lib3ds
 * matrix (float[4][4]) has the same memory layout. */
template <class T>
struct CMatrixT {
    std::array<T, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    template <class TOther>
    [[nodiscard]] static CMatrixT From(const TOther* columns) {
        CMatrixT result;
        std::transform(columns, columns + 16, result.m.begin(), [](TOther v) { return static_cast<T>(v); });
        return result;
    }
    template <class TOther>
    [[nodiscard]] static CMatrixT From(const CMatrixT<TOther>& other) {
        return From(other.m.data());
    }
    [[nodiscard]] static CMatrixT FromLib3ds(const float (&source)[4][4]) { return From(&source[0][0]); }
    [[nodiscard]] static CMatrixT Translation(CVec3T<T> t);
    [[nodiscard]] static CMatrixT Scale(CVec3T<T> s);
    /** Rotation of angleDeg degrees about the given axis (need not be of unit length), counter-clockwise. */
    [[nodiscard]] static CMatrixT Rotation(T angleDeg, CVec3T<T> axis);

    [[nodiscard]] CVec3T<T> TransformPoint(CVec3T<T> p) const {
        return {m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12], m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13],
                m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14]};
    }
    [[nodiscard]] CVec3T<T> TransformDirection(CVec3T<T> d) const {
        return {m[0] * d.x + m[4] * d.y + m[8] * d.z, m[1] * d.x + m[5] * d.y + m[9] * d.z,
                m[2] * d.x + m[6] * d.y + m[10] * d.z};
    }
    [[nodiscard]] std::array<T, 4> Transform(const std::array<T, 4>& v) const;
    /** Row 0..3, which yields x, y, z or w of a transformed point. */
    [[nodiscard]] std::array<T, 4> Row(std::size_t row) const {
        return {m[row], m[row + 4], m[row + 8], m[row + 12]};
    }

    /** Determinant of the upper left 3x3: negative where the transform mirrors. Computed in double. */
    [[nodiscard]] double Determinant3() const;
    [[nodiscard]] bool IsFinite() const;
    /** The full inverse, computed in double. The identity and *ok = false where the matrix is singular or not
     * finite, or the inverse leaves the range of a double. */
    [[nodiscard]] CMatrixT Inverse(bool* ok = nullptr) const;
    /** The inverse of an affine matrix. The identity and *ok = false also where the matrix flattens space:
     * its determinant is at most 1e-12 times the cube of its longest column. */
    [[nodiscard]] CMatrixT AffineInverse(bool* ok = nullptr) const;
    /** The 3x3 matrix, column by column, that transforms normals, scaled so that its largest entry is 1. The
     * normals that it yields are not of unit length. */
    [[nodiscard]] std::array<float, 9> NormalMatrix() const;
    [[nodiscard]] std::array<float, 16> ToFloat() const { return CMatrixT<float>::From(*this).m; }

    /** a * b applies b first. */
    friend CMatrixT operator*(const CMatrixT& a, const CMatrixT& b) { return Product(a, b); }
    friend bool operator==(const CMatrixT&, const CMatrixT&) = default;

  private:
    [[nodiscard]] static CMatrixT Product(const CMatrixT& a, const CMatrixT& b);
};

extern template struct CMatrixT<float>;
extern template struct CMatrixT<double>;

using CMat4 = CMatrixT<float>;
/** Products of camera, rotation and node transforms are computed in double, so that a scene far from the
 * origin does not jitter: only the result, in eye coordinates, is rounded to float. */
using CMatrix4d = CMatrixT<double>;
