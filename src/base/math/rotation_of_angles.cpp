// SPDX-License-Identifier: MIT
#include "base/math/rotation_of_angles.h"

#include <cmath>

float WithoutWholeTurns(float angleDeg) {
    return std::isfinite(angleDeg) ? std::fmod(angleDeg, 360.0f) : 0.0f;
}

CMat4 RotationOfAngles(float xDeg, float yDeg, float zDeg) {
    return CMat4::Rotation(WithoutWholeTurns(xDeg), {1, 0, 0}) *
           CMat4::Rotation(WithoutWholeTurns(yDeg), {0, 1, 0}) *
           CMat4::Rotation(WithoutWholeTurns(zDeg), {0, 0, 1});
}
