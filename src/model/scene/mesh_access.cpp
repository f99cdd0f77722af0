// SPDX-License-Identifier: MIT
#include "model/scene/mesh_access.h"

CMat4 FlipOf(const CMat4& matrix) {
    bool invertible = false;
    const CMat4 inverse = matrix.AffineInverse(&invertible);
    if (!invertible || matrix.Determinant3() >= 0) return {};
    return matrix * CMat4::Scale({-1, 1, 1}) * inverse;
}
