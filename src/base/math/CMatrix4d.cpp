// SPDX-License-Identifier: MIT
#include "base/math/CMatrix4d.h"

#include <algorithm>
#include <cmath>
#include <utility>

CMatrix4d CMatrix4d::From(const float* columns) {
    CMatrix4d result;
    std::copy_n(columns, 16, result.m.begin());
    return result;
}

CMatrix4d CMatrix4d::Translation(double x, double y, double z) {
    CMatrix4d result;
    result.m[12] = x;
    result.m[13] = y;
    result.m[14] = z;
    return result;
}

std::array<float, 16> CMatrix4d::ToFloat() const {
    std::array<float, 16> result{};
    std::transform(m.begin(), m.end(), result.begin(), [](double d) { return static_cast<float>(d); });
    return result;
}

CMatrix4d operator*(const CMatrix4d& a, const CMatrix4d& b) {
    CMatrix4d result;
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            double sum = 0;
            for (std::size_t k = 0; k < 4; ++k) sum += a.m[k * 4 + row] * b.m[column * 4 + k];
            result.m[column * 4 + row] = sum;
        }
    }
    return result;
}

std::array<double, 4> CMatrix4d::Transform(const std::array<double, 4>& v) const {
    std::array<double, 4> result{};
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t k = 0; k < 4; ++k) result[row] += m[k * 4 + row] * v[k];
    }
    return result;
}

CMatrix4d CMatrix4d::Inverse(bool* ok) const {
    // Gauss-Jordan with pivoting, on columns: inverting the transposed matrix gives the transposed inverse.
    CMatrix4d left = *this, right;
    if (ok) *ok = true;
    for (std::size_t i = 0; i < 4; ++i) {
        std::size_t pivot = i;
        for (std::size_t c = i + 1; c < 4; ++c) {
            if (std::abs(left.m[c * 4 + i]) > std::abs(left.m[pivot * 4 + i])) pivot = c;
        }
        const double divisor = left.m[pivot * 4 + i];
        if (!(std::abs(divisor) > 0) || !std::isfinite(divisor)) {
            if (ok) *ok = false;
            return {};
        }
        for (std::size_t r = 0; r < 4; ++r) {
            std::swap(left.m[i * 4 + r], left.m[pivot * 4 + r]);
            std::swap(right.m[i * 4 + r], right.m[pivot * 4 + r]);
            left.m[i * 4 + r] /= divisor;
            right.m[i * 4 + r] /= divisor;
        }
        for (std::size_t c = 0; c < 4; ++c) {
            const double factor = left.m[c * 4 + i];
            if (c == i || factor == 0) continue;
            for (std::size_t r = 0; r < 4; ++r) {
                left.m[c * 4 + r] -= factor * left.m[i * 4 + r];
                right.m[c * 4 + r] -= factor * right.m[i * 4 + r];
            }
        }
    }
    return right;
}

double CMatrix4d::Determinant3() const {
    return m[0] * (m[5] * m[10] - m[9] * m[6]) - m[4] * (m[1] * m[10] - m[9] * m[2]) +
           m[8] * (m[1] * m[6] - m[5] * m[2]);
}

std::array<float, 9> CMatrix4d::NormalMatrix() const {
    // The cofactors are the inverse transposed times the determinant, whose sign must not turn normals over.
    const double sign = Determinant3() < 0 ? -1 : 1;
    std::array<double, 9> cofactors{
        m[5] * m[10] - m[6] * m[9], m[6] * m[8] - m[4] * m[10], m[4] * m[9] - m[5] * m[8],
        m[2] * m[9] - m[1] * m[10], m[0] * m[10] - m[2] * m[8], m[1] * m[8] - m[0] * m[9],
        m[1] * m[6] - m[2] * m[5],  m[2] * m[4] - m[0] * m[6],  m[0] * m[5] - m[1] * m[4]};
    double largest = 0;
    for (double c : cofactors) largest = std::max(largest, std::abs(c));
    const double scale = largest > 0 ? sign / largest : 0;
    std::array<float, 9> result{};
    std::transform(cofactors.begin(), cofactors.end(), result.begin(),
                   [scale](double c) { return static_cast<float>(c * scale); });
    return result;
}
