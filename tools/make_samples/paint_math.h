// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

#include "base/math/CVec.h"

/** Arithmetic on colours that the painters share. */
namespace paint_math {

/** a at t = 0, b at t = 1, clamped outside. */
inline CVec3 Mix(CVec3 a, CVec3 b, float t) {
    return a + (b - a) * std::clamp(t, 0.0f, 1.0f);
}
inline CVec3 Grey(float value) {
    return {value, value, value};
}
/** 0 before from, 1 after to (which may be smaller), smooth between. */
inline float Step(float from, float to, float x) {
    const float t = std::clamp((x - from) / (to - from), 0.0f, 1.0f);
    return t * t * (3 - 2 * t);
}

}  // namespace paint_math
