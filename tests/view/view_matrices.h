// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <numbers>

#include "view/CSavedView.h"

/** Cameras for tests, made as gluPerspective, gluLookAt and the view's own transforms make them. */
namespace view_matrices {

using CMatrix = std::array<double, 16>;

inline CMatrix Product(const CMatrix& a, const CMatrix& b) {
    CMatrix c{};
    for (std::size_t i = 0; i < 4; ++i)
        for (std::size_t j = 0; j < 4; ++j)
            for (std::size_t k = 0; k < 4; ++k) c[i * 4 + j] += a[k * 4 + j] * b[i * 4 + k];
    return c;
}

/** Vertical field of view 45 degrees. */
inline CMatrix Perspective(double aspect, double nearPlane, double farPlane) {
    const double f = 1 / std::tan(std::numbers::pi / 8), depth = nearPlane - farPlane;
    return {f / aspect,
            0,
            0,
            0,
            0,
            f,
            0,
            0,
            0,
            0,
            (farPlane + nearPlane) / depth,
            -1,
            0,
            0,
            2 * farPlane * nearPlane / depth,
            0};
}

inline CMatrix LookAt(CVec3d eye, CVec3d target, CVec3d up) {
    const CVec3d sight = target - eye, f = sight * (1 / Length(sight)), s = Normalized(Cross(f, up)),
                 u = Cross(s, f);
    return {s.x, u.x, -f.x, 0, s.y,          u.y,          -f.y,        0,
            s.z, u.z, -f.z, 0, -Dot(s, eye), -Dot(u, eye), Dot(f, eye), 1};
}

/** Where a point of the space of the matrices shows in the window, y upwards. */
inline CVec3d Project(const CViewMatrices& m, CVec3d p) {
    const CMatrix all = Product(m.projection, m.modelView);
    const auto row = [&](std::size_t r) {
        return all[r] * p.x + all[4 + r] * p.y + all[8 + r] * p.z + all[12 + r];
    };
    const double w = row(3);
    return {m.viewport[0] + (row(0) / w + 1) * m.viewport[2] / 2,
            m.viewport[1] + (row(1) / w + 1) * m.viewport[3] / 2, row(2) / w};
}

/** 400 x 300 pixels, eye where given as seen from the look-at point, the model-view matrix centred there. */
inline CViewMatrices Looking(CVec3d eye, CVec3d up, double nearPlane = 0.5, double farPlane = 20) {
    CViewMatrices m;
    m.viewport = {0, 0, 400, 300};
    m.projection = Product(Perspective(4.0 / 3, nearPlane, farPlane), LookAt(eye, {}, up));
    return m;
}

}  // namespace view_matrices
