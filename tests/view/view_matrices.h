// SPDX-License-Identifier: MIT
#pragma once

#include "camera/CSavedView.h"
#include "camera/camera_matrices.h"

namespace view_matrices {

/** Where a point of the space of the matrices shows in the window, y upwards. */
inline CVec3d Project(const CViewMatrices& m, CVec3d p) {
    const auto all = camera_matrices::Product(m.projection, m.modelView);
    const auto row = [&](std::size_t r) {
        return all[r] * p.x + all[4 + r] * p.y + all[8 + r] * p.z + all[12 + r];
    };
    const double w = row(3);
    return {m.viewport[0] + (row(0) / w + 1) * m.viewport[2] / 2,
            m.viewport[1] + (row(1) / w + 1) * m.viewport[3] / 2, row(2) / w};
}

/** 400 x 300 pixels, 45 degrees high, the eye where given as seen from the look-at point, the model-view
 * matrix centred there. */
inline CViewMatrices Looking(CVec3d eye, CVec3d up, double nearPlane = 0.5, double farPlane = 20) {
    using namespace camera_matrices;
    CViewMatrices m;
    m.viewport = {0, 0, 400, 300};
    m.projection = Product(Perspective(45, 4.0 / 3, nearPlane, farPlane), LookAt(eye, {}, up));
    return m;
}

}  // namespace view_matrices
