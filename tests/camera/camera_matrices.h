// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <numbers>

#include "base/math/CMatrix.h"

/** Cameras for tests, column by column, made as gluPerspective and gluLookAt make them. */
namespace camera_matrices {

inline CMatrix4d Perspective(double fovYDeg, double aspect, double nearPlane, double farPlane) {
    const double f = 1 / std::tan(fovYDeg * std::numbers::pi / 360), depth = nearPlane - farPlane;
    CMatrix4d lens;
    lens.m[0] = f / aspect;
    lens.m[5] = f;
    lens.m[10] = (farPlane + nearPlane) / depth;
    lens.m[11] = -1;
    lens.m[15] = 0;
    lens.m[14] = 2 * farPlane * nearPlane / depth;
    return lens;
}

template <class TVec>
CMatrix4d LookAt(TVec eye, TVec target, TVec up) {
    const TVec sight = target - eye, f = sight * (1 / Length(sight)), s = Normalized(Cross(f, up)),
               u = Cross(s, f);
    CMatrix4d turn;
    turn.m = {s.x, u.x, -f.x, 0, s.y, u.y, -f.y, 0, s.z, u.z, -f.z, 0, 0, 0, 0, 1};
    return turn * CMatrix4d::Translation({-eye.x, -eye.y, -eye.z});
}

}  // namespace camera_matrices
