// SPDX-License-Identifier: MIT
#pragma once

#include "base/math/CMatrix.h"

/** A rotation as a unit quaternion. Products are normalized, so that a chain of any length stays a rotation;
 * matrices multiplied during an hour of dragging would begin to shear. */
class CRotation {
  public:
    CRotation() = default;

    /** Counter-clockwise by angle (radians) about a unit axis; the zero axis gives no rotation. */
    [[nodiscard]] static CRotation About(CVec3d axis, double angle);
    /** The shortest rotation from one unit vector to another; the identity where there is no single shortest
     * one (opposite or zero vectors). */
    [[nodiscard]] static CRotation Between(CVec3d from, CVec3d to);

    /** a * b rotates by b first. */
    friend CRotation operator*(const CRotation& a, const CRotation& b);

    [[nodiscard]] CVec3d Apply(CVec3d v) const;
    [[nodiscard]] CMat4 Matrix() const;

  private:
    CRotation(double w, CVec3d v) : m_w(w), m_v(v) {}

    double m_w = 1;
    CVec3d m_v;
};
