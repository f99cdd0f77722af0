// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

/** Cameras for tests, column by column, made as gluPerspective and gluLookAt make them. */
namespace camera_matrices {

using CMatrix = std::array<double, 16>;

/** a * b: applies b first. */
inline CMatrix Product(const CMatrix& a, const CMatrix& b) {
    CMatrix c{};
    for (std::size_t i = 0; i < 16; ++i) {
        for (std::size_t k = 0; k < 4; ++k) c[i] += a[k * 4 + i % 4] * b[i / 4 * 4 + k];
    }
    return c;
}

inline CMatrix Perspective(double fovYDeg, double aspect, double nearPlane, double farPlane) {
    const double f = 1 / std::tan(fovYDeg * std::numbers::pi / 360), depth = nearPlane - farPlane;
    CMatrix lens{};
    lens[0] = f / aspect;
    lens[5] = f;
    lens[10] = (farPlane + nearPlane) / depth;
    lens[11] = -1;
    lens[14] = 2 * farPlane * nearPlane / depth;
    return lens;
}

template <class TVec>
CMatrix LookAt(TVec eye, TVec target, TVec up) {
    const TVec sight = target - eye, f = sight * (1 / Length(sight)), s = Normalized(Cross(f, up)),
               u = Cross(s, f);
    const CMatrix turn{s.x, u.x, -f.x, 0, s.y, u.y, -f.y, 0, s.z, u.z, -f.z, 0, 0, 0, 0, 1},
        move{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -eye.x, -eye.y, -eye.z, 1};
    return Product(turn, move);
}

}  // namespace camera_matrices
