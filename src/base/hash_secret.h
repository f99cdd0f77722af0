// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

/** Odd multipliers for hashes, random in every process, so that nobody can write a file whose keys collide.
 * No result may depend on them, only the time that it takes. */
extern const std::array<std::uint64_t, 4> kHashSecret;
