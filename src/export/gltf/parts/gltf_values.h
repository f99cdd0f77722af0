// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>

/** Values of a scene as glTF has them. */
namespace gltf_values {

/** 0..1; 0 for what is not finite. */
[[nodiscard]] inline float Unit(float value) {
    return std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 0.0f;
}

/** The light that an sRGB value, 0..1, stands for. */
[[nodiscard]] inline float Linear(float value) {
    const float v = Unit(value);
    return v <= 0.04045f ? v / 12.92f : std::pow((v + 0.055f) / 1.055f, 2.4f);
}

}  // namespace gltf_values
