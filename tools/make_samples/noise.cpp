// SPDX-License-Identifier: MIT
#include "make_samples/noise.h"

#include <cmath>

namespace noise {
namespace {

float Ease(float t) {
    return t * t * (3 - 2 * t);
}
float Mix(float a, float b, float t) {
    return a + (b - a) * t;
}

std::int32_t Wrapped(std::int32_t x, std::int32_t period) {
    return period > 0 ? ((x % period) + period) % period : x;
}

}  // namespace

float Hash(std::int32_t x, std::int32_t y, std::uint32_t seed) {
    std::uint32_t h = static_cast<std::uint32_t>(x) * 0x9E3779B1u +
                      static_cast<std::uint32_t>(y) * 0x85EBCA77u + seed * 0xC2B2AE3Du;
    h = (h ^ (h >> 15)) * 0x2C1B3C6Du;
    h = (h ^ (h >> 12)) * 0x297A2D39u;
    h ^= h >> 15;
    return static_cast<float>(h & 0xFFFFFFu) / static_cast<float>(0xFFFFFFu);
}

float Smooth(float x, float y, std::uint32_t seed, std::int32_t periodX) {
    const float fx = std::floor(x), fy = std::floor(y);
    const auto ix = static_cast<std::int32_t>(fx), iy = static_cast<std::int32_t>(fy);
    const std::int32_t x0 = Wrapped(ix, periodX), x1 = Wrapped(ix + 1, periodX);
    const float tx = Ease(x - fx), ty = Ease(y - fy);
    return Mix(Mix(Hash(x0, iy, seed), Hash(x1, iy, seed), tx),
               Mix(Hash(x0, iy + 1, seed), Hash(x1, iy + 1, seed), tx), ty);
}

float Cloud(float x, float y, std::uint32_t seed, int octaves, std::int32_t periodX) {
    float sum = 0, weight = 0, strength = 1;
    for (int i = 0; i < octaves; ++i) {
        sum += strength * Smooth(x, y, seed + static_cast<std::uint32_t>(i), periodX);
        weight += strength;
        strength *= 0.5f;
        x *= 2;
        y *= 2;
        periodX *= 2;
    }
    return sum / weight;
}

}  // namespace noise
