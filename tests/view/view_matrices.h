// SPDX-License-Identifier: MIT
#pragma once

#include "camera/CSavedView.h"
#include "camera/camera_matrices.h"

namespace view_matrices {

/** Where a point of the space of the matrices shows in the window, y upwards. */
inline CVec3d Project(const CViewMatrices& m, CVec3d p) {
    const auto [x, y, z, w] = (m.projection * m.modelView).Transform({p.x, p.y, p.z, 1});
    return {m.viewport[0] + (x / w + 1) * m.viewport[2] / 2, m.viewport[1] + (y / w + 1) * m.viewport[3] / 2,
            z / w};
}

/** 400 x 300 pixels, 45 degrees high, the eye where given as seen from the look-at point, the model-view
 * matrix centred there. */
inline CViewMatrices Looking(CVec3d eye, CVec3d up, double nearPlane = 0.5, double farPlane = 20) {
    using namespace camera_matrices;
    CViewMatrices m;
    m.viewport = {0, 0, 400, 300};
    m.projection = Perspective(45, 4.0 / 3, nearPlane, farPlane) * LookAt(eye, {}, up);
    return m;
}

}  // namespace view_matrices
