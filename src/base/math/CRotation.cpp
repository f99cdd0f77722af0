// SPDX-License-Identifier: MIT
#include "base/math/CRotation.h"

CRotation CRotation::About(CVec3d axis, double angle) {
    if (axis == CVec3d{} || !std::isfinite(angle)) return {};
    return {std::cos(angle / 2), axis * std::sin(angle / 2)};
}

CRotation CRotation::Between(CVec3d from, CVec3d to) {
    const CVec3d axis = Cross(from, to);
    const double sine = Length(axis);
    // acos of the scalar product would lose half the digits of a small angle, and every drag begins with one.
    if (!(sine > 1e-12)) return {};
    return About(axis * (1.0 / sine), std::atan2(sine, Dot(from, to)));
}

CRotation operator*(const CRotation& a, const CRotation& b) {
    const double w = a.m_w * b.m_w - Dot(a.m_v, b.m_v);
    const CVec3d v = b.m_v * a.m_w + a.m_v * b.m_w + Cross(a.m_v, b.m_v);
    const double length = std::sqrt(w * w + Dot(v, v));
    if (!(length > 0) || !std::isfinite(length)) return {};
    return {w / length, v * (1.0 / length)};
}

CVec3d CRotation::Apply(CVec3d v) const {
    const CVec3d t = Cross(m_v, v) * 2.0;
    return v + t * m_w + Cross(m_v, t);
}

CMat4 CRotation::Matrix() const {
    const CVec3d x = Apply({1, 0, 0}), y = Apply({0, 1, 0}), z = Apply({0, 0, 1});
    CMatrix4d matrix;
    matrix.m = {x.x, x.y, x.z, 0, y.x, y.y, y.z, 0, z.x, z.y, z.z, 0, 0, 0, 0, 1};
    return CMat4::From(matrix);
}
