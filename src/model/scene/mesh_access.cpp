// SPDX-License-Identifier: MIT
#include "model/scene/mesh_access.h"

#include <lib3ds/mesh.h>

CMat4 FlipOfMesh(const Lib3dsMesh& mesh) {
    const CMat4 matrix = CMat4::FromLib3ds(mesh.matrix);
    bool invertible = false;
    const CMat4 inverse = matrix.AffineInverse(&invertible);
    if (!invertible || matrix.Determinant3() >= 0) return {};
    return matrix * CMat4::Scale({-1, 1, 1}) * inverse;
}
