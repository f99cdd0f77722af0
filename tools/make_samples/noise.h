// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** Repeatable noise: the same on every machine and run. */
namespace noise {

/** 0..1 for a point of an endless grid. */
[[nodiscard]] float Hash(std::int32_t x, std::int32_t y, std::uint32_t seed);
/** Smooth noise, 0..1, that repeats every periodX in x (0: never). */
[[nodiscard]] float Smooth(float x, float y, std::uint32_t seed, std::int32_t periodX = 0);
/** Several octaves of it, each half as strong and twice as fine; about 0..1. */
[[nodiscard]] float Cloud(float x, float y, std::uint32_t seed, int octaves, std::int32_t periodX = 0);

}  // namespace noise
