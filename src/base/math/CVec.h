// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <type_traits>

/** Points, directions and colours. Places are in the scene's own units, +Z up, right-handed. */
struct CVec2 {
    float x = 0, y = 0;
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
/** For rays and turns, which lose too much in floats. */
using CVec3d = CVec3T<double>;

// A list in braces counts as a CVec3. Declared inline, as the compiler inlines a plain template less.
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
/** A vector shorter than this has no direction that can be told: the squares of its numbers leave a float's
 * range, and the root of their sum is rounding. */
constexpr double kNoLength = 1e-20;

/** a / |a|; the zero vector where a is no longer than `none`. A caller whose vectors have a known size, and
 * noise in proportion, gives a larger one. */
template <class T = float>
inline CVec3T<T> Normalized(CVec3T<T> a, std::type_identity_t<T> none = static_cast<T>(kNoLength)) {
    const T length = Length(a);
    return length > none ? a * (T{1} / length) : CVec3T<T>{};
}
