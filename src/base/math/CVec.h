// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <type_traits>

/** Points, directions and colours. Places are in the scene's own units, +Z up, right-handed. */
struct CVec2 {
    float x = 0, y = 0;
    friend bool operator==(const CVec2&, const CVec2&) = default;
};

template <class T>
struct CVec3T {
    T x = 0, y = 0, z = 0;

    friend constexpr CVec3T operator+(CVec3T a, CVec3T b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend constexpr CVec3T operator-(CVec3T a, CVec3T b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend constexpr CVec3T operator*(CVec3T a, T s) { return {a.x * s, a.y * s, a.z * s}; }
    friend constexpr CVec3T operator-(CVec3T a) { return {-a.x, -a.y, -a.z}; }
    friend bool operator==(const CVec3T&, const CVec3T&) = default;
};

using CVec3 = CVec3T<float>;
/** For rays and rotations, which lose too much precision in floats. */
using CVec3d = CVec3T<double>;

// type_identity_t lets a braced list stand for a vector. Declared inline because the compiler inlines a plain
// template less readily.
template <class T = float>
inline T Dot(CVec3T<T> a, std::type_identity_t<CVec3T<T>> b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
template <class T = float>
inline CVec3T<T> Cross(CVec3T<T> a, std::type_identity_t<CVec3T<T>> b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
template <class T = float>
inline T Length(CVec3T<T> a) {
    return std::sqrt(Dot(a, a));
}
template <class T = float>
inline bool IsFinite(CVec3T<T> a) {
    return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}
/** A vector shorter than this has no usable direction: the squares of its components underflow a float, so
 * its length is mere rounding error. */
constexpr double kNoLength = 1e-20;

/** a / |a|; the zero vector where a is no longer than `none`. A caller that knows the size of its vectors,
 * and so of their rounding errors, passes a larger `none`. */
template <class T = float>
inline CVec3T<T> Normalized(CVec3T<T> a, std::type_identity_t<T> none = static_cast<T>(kNoLength)) {
    const T length = Length(a);
    return length > none ? a * (T{1} / length) : CVec3T<T>{};
}
