// SPDX-License-Identifier: MIT
#pragma once

#include "base/math/CMatrix.h"

/** The rotation by three angles in degrees: first about Z, then about Y, then about X, all of them the
 * scene's own fixed axes and counter-clockwise as seen from the positive end. As column matrices: Rx * Ry *
 * Rz. A turntable's spin (Z) is thus applied to the scene itself, and its tilt (X) to the spinning scene.
 *
 * The automatic rotation of the view, the POV-Ray export that reproduces it, and the turning of single nodes
 * all use this function, so that they cannot drift apart. Whole turns are taken off first; non-finite angles
 * count as 0. */
[[nodiscard]] CMat4 RotationOfAngles(float xDeg, float yDeg, float zDeg);

/** angleDeg without whole turns, in -360 < a < 360; 0 for one that is not finite. */
[[nodiscard]] float WithoutWholeTurns(float angleDeg);
