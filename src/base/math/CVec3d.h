// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

/** A vector of doubles for the mathematics of rays, which lose too much in floats near the
 * clipping planes. */
struct CVec3d {
    double x = 0, y = 0, z = 0;

    friend CVec3d operator+(CVec3d a, CVec3d b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend CVec3d operator-(CVec3d a, CVec3d b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend CVec3d operator*(CVec3d a, double s) { return {a.x * s, a.y * s, a.z * s}; }
    friend bool operator==(const CVec3d&, const CVec3d&) = default;
};

inline double Dot(CVec3d a, CVec3d b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline CVec3d Cross(CVec3d a, CVec3d b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Length(CVec3d a) {
    return std::sqrt(Dot(a, a));
}
inline bool IsFinite(CVec3d a) {
    return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}
/** a / |a|; a vector shorter than 0.0001 gives the zero vector instead of dividing by next to nothing. */
inline CVec3d Normalized(CVec3d a) {
    const double length = Length(a);
    return length >= 0.0001 ? a * (1.0 / length) : CVec3d{};
}
