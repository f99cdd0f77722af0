// SPDX-License-Identifier: MIT
#include "base/math/geometry.h"

#include <cstring>
#include <numbers>

CMat4 CMat4::FromLib3ds(const float (&source)[4][4]) {
    CMat4 result;
    std::memcpy(result.m.data(), source, sizeof(source));
    return result;
}

CMat4 CMat4::Translation(CVec3 t) {
    CMat4 result;
    result.m[12] = t.x;
    result.m[13] = t.y;
    result.m[14] = t.z;
    return result;
}

CMat4 CMat4::Scale(CVec3 s) {
    CMat4 result;
    result.m[0] = s.x;
    result.m[5] = s.y;
    result.m[10] = s.z;
    return result;
}

CMat4 CMat4::Rotation(float angleDeg, CVec3 axis) {
    const CVec3 a = Normalized(axis);
    const float angle = angleDeg * std::numbers::pi_v<float> / 180.0f;
    const float c = std::cos(angle), s = std::sin(angle), t = 1.0f - c;
    CMat4 result;
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

double CMat4::Determinant3() const {
    const auto d = [this](std::size_t i) { return static_cast<double>(m[i]); };
    return d(0) * (d(5) * d(10) - d(9) * d(6)) - d(4) * (d(1) * d(10) - d(9) * d(2)) +
           d(8) * (d(1) * d(6) - d(5) * d(2));
}

CMat4 CMat4::AffineInverse(bool* ok) const {
    const double det = Determinant3();
    const double scale = static_cast<double>(
        std::max({Length({m[0], m[1], m[2]}), Length({m[4], m[5], m[6]}), Length({m[8], m[9], m[10]})}));
    // Relative to the columns' size: a scene in tiny units is not singular.
    const bool invertible = IsFinite() && std::abs(det) > 1e-12 * scale * scale * scale;
    if (ok) *ok = invertible;
    if (!invertible) return {};

    const auto d = [this](std::size_t i) { return static_cast<double>(m[i]); };
    const double r = 1.0 / det;
    const double inverse[9] = {
        (d(5) * d(10) - d(9) * d(6)) * r, (d(9) * d(2) - d(1) * d(10)) * r, (d(1) * d(6) - d(5) * d(2)) * r,
        (d(8) * d(6) - d(4) * d(10)) * r, (d(0) * d(10) - d(8) * d(2)) * r, (d(4) * d(2) - d(0) * d(6)) * r,
        (d(4) * d(9) - d(8) * d(5)) * r,  (d(8) * d(1) - d(0) * d(9)) * r,  (d(0) * d(5) - d(4) * d(1)) * r};
    CMat4 result;
    for (std::size_t row = 0; row < 3; ++row) {
        double translation = 0;
        for (std::size_t column = 0; column < 3; ++column) {
            result.m[column * 4 + row] = static_cast<float>(inverse[column * 3 + row]);
            translation -= inverse[column * 3 + row] * d(12 + column);
        }
        result.m[12 + row] = static_cast<float>(translation);
    }
    return result;
}

bool CMat4::IsFinite() const {
    return std::all_of(m.begin(), m.end(), [](float value) { return std::isfinite(value); });
}

CMat4 operator*(const CMat4& a, const CMat4& b) {
    CMat4 result;
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            float sum = 0;
            for (std::size_t k = 0; k < 4; ++k) sum += a.m[k * 4 + row] * b.m[column * 4 + k];
            result.m[column * 4 + row] = sum;
        }
    }
    return result;
}

CBox CBox::Transformed(const CMat4& matrix) const {
    CBox result;
    if (IsEmpty()) return result;
    for (unsigned corner = 0; corner < 8; ++corner) result.Add(matrix.TransformPoint(Corner(corner)));
    return result;
}
