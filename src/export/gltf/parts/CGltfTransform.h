// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include "base/math/CMatrix.h"

class CJsonText;

/** The transform of one glTF node: scaled first, then turned, then moved. */
struct CGltfTransform {
    CVec3 translation;
    std::array<float, 4> rotation{0, 0, 0, 1};  ///< a unit quaternion: x, y, z, w
    CVec3 scale{1, 1, 1};

    [[nodiscard]] bool IsFinite() const;
    [[nodiscard]] bool IsIdentity() const;
    [[nodiscard]] CMatrix4d Matrix() const;
    /** Writes the members of a node that are not the default. */
    void Write(CJsonText& json) const;
};

/** The transforms whose product is the matrix, the outermost first: one, or two for a matrix that shears, which is
 * turned, stretched and turned again (its singular value decomposition). The matrix is affine and finite. */
[[nodiscard]] std::vector<CGltfTransform> TransformsOf(const CMatrix4d& matrix);
/** The turn that takes x, y and z to these perpendicular unit vectors, which are right-handed. */
[[nodiscard]] std::array<float, 4> TurnTo(CVec3d x, CVec3d y, CVec3d z);
