// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

/** Plain vectors, matrices and bounds. Everything is in the scene's own units, +Z up, right-handed. */
struct CVec2 {
    float x = 0, y = 0;
};

struct CVec3 {
    float x = 0, y = 0, z = 0;

    friend CVec3 operator+(CVec3 a, CVec3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend CVec3 operator-(CVec3 a, CVec3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend CVec3 operator*(CVec3 a, float s) { return {a.x * s, a.y * s, a.z * s}; }
    friend CVec3 operator-(CVec3 a) { return {-a.x, -a.y, -a.z}; }
    friend bool operator==(const CVec3&, const CVec3&) = default;
};

inline float Dot(CVec3 a, CVec3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline CVec3 Cross(CVec3 a, CVec3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float Length(CVec3 a) {
    return std::sqrt(Dot(a, a));
}
/** a / |a|; a vector shorter than 1e-20 gives the zero vector instead of dividing by zero. */
inline CVec3 Normalized(CVec3 a) {
    const float length = Length(a);
    return length > 1e-20f ? a * (1.0f / length) : CVec3{};
}
inline bool IsFinite(CVec3 a) {
    return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}

/** A 4x4 matrix stored column by column, as glMultMatrixf takes it; m[12..14] is the translation. A lib3ds
 * matrix (float[4][4]) has the same memory layout. */
struct CMat4 {
    std::array<float, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    [[nodiscard]] static CMat4 FromLib3ds(const float (&source)[4][4]);
    [[nodiscard]] static CMat4 Translation(CVec3 t);
    [[nodiscard]] static CMat4 Scale(CVec3 s);
    /** Rotation of angleDeg degrees about the given axis (need not be of unit length), counter-clockwise. */
    [[nodiscard]] static CMat4 Rotation(float angleDeg, CVec3 axis);

    [[nodiscard]] CVec3 TransformPoint(CVec3 p) const {
        return {m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12], m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13],
                m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14]};
    }
    [[nodiscard]] CVec3 TransformDirection(CVec3 d) const {
        return {m[0] * d.x + m[4] * d.y + m[8] * d.z, m[1] * d.x + m[5] * d.y + m[9] * d.z,
                m[2] * d.x + m[6] * d.y + m[10] * d.z};
    }
    /** Determinant of the upper left 3x3: negative where the transform mirrors. Computed in double. */
    [[nodiscard]] double Determinant3() const;
    /** Inverse of an affine matrix; a singular or non-finite one gives the identity and *ok = false. */
    [[nodiscard]] CMat4 AffineInverse(bool* ok = nullptr) const;
    [[nodiscard]] bool IsFinite() const;

    /** a * b applies b first. */
    friend CMat4 operator*(const CMat4& a, const CMat4& b);
    friend bool operator==(const CMat4&, const CMat4&) = default;
};

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
    [[nodiscard]] CVec3 Corner(unsigned i) const {
        return {(i & 1u) ? max.x : min.x, (i & 2u) ? max.y : min.y, (i & 4u) ? max.z : min.z};
    }
    /** The axis-aligned box round the eight transformed corners; empty stays empty. */
    [[nodiscard]] CBox Transformed(const CMat4& matrix) const;
};

struct CSphere {
    CVec3 center;
    float radius = 0;
};
