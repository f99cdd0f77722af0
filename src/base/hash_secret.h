// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

/** Odd numbers that differ in every process: hashes that multiply by them collide for nobody who writes a file. No
 * result may depend on them, only the time it takes. */
extern const std::array<std::uint64_t, 4> kHashSecret;
