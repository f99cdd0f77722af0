// SPDX-License-Identifier: MIT
#include "base/math/CMatrix.h"

#include <numbers>
#include <utility>

namespace {

/** Brings the largest number of a column, at or below the diagonal, to the diagonal by exchanging rows; false
 * when there is none to divide by. */
bool PivotRow(CMatrix4d& left, CMatrix4d& right, std::size_t column) {
    std::size_t best = column;
    for (std::size_t row = column + 1; row < 4; ++row) {
        if (std::abs(left.m[column * 4 + row]) > std::abs(left.m[column * 4 + best])) best = row;
    }
    for (std::size_t k = 0; k < 4; ++k) {
        std::swap(left.m[k * 4 + best], left.m[k * 4 + column]);
        std::swap(right.m[k * 4 + best], right.m[k * 4 + column]);
    }
    const double pivot = left.m[column * 4 + column];
    return pivot != 0 && std::isfinite(pivot);
}

/** Gauss-Jordan by rows, so that the last row of an affine matrix stays 0 0 0 1 to the bit. */
bool Invert(CMatrix4d left, CMatrix4d& right) {
    right = {};
    for (std::size_t i = 0; i < 4; ++i) {
        if (!PivotRow(left, right, i)) return false;
        const double pivot = left.m[i * 4 + i];
        for (std::size_t k = 0; k < 4; ++k) {
            left.m[k * 4 + i] /= pivot;
            right.m[k * 4 + i] /= pivot;
        }
        for (std::size_t row = 0; row < 4; ++row) {
            const double factor = left.m[i * 4 + row];
            if (row == i || factor == 0) continue;
            for (std::size_t k = 0; k < 4; ++k) {
                left.m[k * 4 + row] -= factor * left.m[k * 4 + i];
                right.m[k * 4 + row] -= factor * right.m[k * 4 + i];
            }
        }
    }
    return right.IsFinite();
}

}  // namespace

template <class T>
CMatrixT<T> CMatrixT<T>::Translation(CVec3T<T> t) {
    CMatrixT result;
    result.m[12] = t.x;
    result.m[13] = t.y;
    result.m[14] = t.z;
    return result;
}

template <class T>
CMatrixT<T> CMatrixT<T>::Scale(CVec3T<T> s) {
    CMatrixT result;
    result.m[0] = s.x;
    result.m[5] = s.y;
    result.m[10] = s.z;
    return result;
}

template <class T>
CMatrixT<T> CMatrixT<T>::Rotation(T angleDeg, CVec3T<T> axis) {
    const CVec3T<T> a = Normalized(axis);
    const T angle = angleDeg * std::numbers::pi_v<T> / T{180};
    const T c = std::cos(angle), s = std::sin(angle), t = T{1} - c;
    CMatrixT result;
    result.m = {t * a.x * a.x + c,
                t * a.x * a.y + s * a.z,
                t * a.x * a.z - s * a.y,
                0,
                t * a.x * a.y - s * a.z,
                t * a.y * a.y + c,
                t * a.y * a.z + s * a.x,
                0,
                t * a.x * a.z + s * a.y,
                t * a.y * a.z - s * a.x,
                t * a.z * a.z + c,
                0,
                0,
                0,
                0,
                1};
    return result;
}

template <class T>
std::array<T, 4> CMatrixT<T>::Transform(const std::array<T, 4>& v) const {
    std::array<T, 4> result{};
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t k = 0; k < 4; ++k) result[row] += m[k * 4 + row] * v[k];
    }
    return result;
}

template <class T>
double CMatrixT<T>::Determinant3() const {
    const auto d = [this](std::size_t i) { return static_cast<double>(m[i]); };
    return d(0) * (d(5) * d(10) - d(9) * d(6)) - d(4) * (d(1) * d(10) - d(9) * d(2)) +
           d(8) * (d(1) * d(6) - d(5) * d(2));
}

template <class T>
bool CMatrixT<T>::IsFinite() const {
    return std::all_of(m.begin(), m.end(), [](T value) { return std::isfinite(value); });
}

template <class T>
CMatrixT<T> CMatrixT<T>::Inverse(bool* ok) const {
    CMatrix4d inverse;
    const bool invertible = Invert(CMatrix4d::From(*this), inverse);
    if (ok) *ok = invertible;
    return invertible ? From(inverse) : CMatrixT{};
}

template <class T>
CMatrixT<T> CMatrixT<T>::AffineInverse(bool* ok) const {
    const double scale = static_cast<double>(
        std::max({Length(CVec3T<T>{m[0], m[1], m[2]}), Length(CVec3T<T>{m[4], m[5], m[6]}),
                  Length(CVec3T<T>{m[8], m[9], m[10]})}));
    // Relative to the columns' size: a scene in tiny units is not singular.
    if (IsFinite() && std::abs(Determinant3()) > 1e-12 * scale * scale * scale) return Inverse(ok);
    if (ok) *ok = false;
    return {};
}

template <class T>
std::array<float, 9> CMatrixT<T>::NormalMatrix() const {
    const CMatrix4d wide = CMatrix4d::From(*this);
    const std::array<double, 16>& d = wide.m;
    // The cofactors are the inverse transposed times the determinant, whose sign must not turn normals over.
    const double sign = Determinant3() < 0 ? -1 : 1;
    std::array<double, 9> cofactors{
        d[5] * d[10] - d[6] * d[9], d[6] * d[8] - d[4] * d[10], d[4] * d[9] - d[5] * d[8],
        d[2] * d[9] - d[1] * d[10], d[0] * d[10] - d[2] * d[8], d[1] * d[8] - d[0] * d[9],
        d[1] * d[6] - d[2] * d[5],  d[2] * d[4] - d[0] * d[6],  d[0] * d[5] - d[1] * d[4]};
    double largest = 0;
    for (double c : cofactors) largest = std::max(largest, std::abs(c));
    const double scale = largest > 0 ? sign / largest : 0;
    std::array<float, 9> result{};
    std::transform(cofactors.begin(), cofactors.end(), result.begin(),
                   [scale](double c) { return static_cast<float>(c * scale); });
    return result;
}

template <class T>
CMatrixT<T> CMatrixT<T>::Product(const CMatrixT& a, const CMatrixT& b) {
    CMatrixT result;
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            T sum = 0;
            for (std::size_t k = 0; k < 4; ++k) sum += a.m[k * 4 + row] * b.m[column * 4 + k];
            result.m[column * 4 + row] = sum;
        }
    }
    return result;
}

template struct CMatrixT<float>;
template struct CMatrixT<double>;
