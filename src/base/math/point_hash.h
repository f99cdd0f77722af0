// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>

#include "base/hash_secret.h"
#include "base/math/CVec.h"

/** Keys for CHashIndex. Equal points have equal keys; 0 and -0 count as equal. */
namespace point_hash {

inline std::uint64_t Bits(float a, float b) {
    // Adding 0 turns -0 into 0.
    return (std::uint64_t{std::bit_cast<std::uint32_t>(a + 0.0f)} << 32) |
           std::bit_cast<std::uint32_t>(b + 0.0f);
}
inline std::uint64_t HashOf(CVec3 p) {
    return Bits(p.x, p.y) * kHashSecret[2] ^ Bits(p.z, 0);
}
inline std::uint64_t HashOf(CVec3 p, CVec2 t) {
    return (HashOf(p) * kHashSecret[3]) ^ Bits(t.x, t.y);
}

}  // namespace point_hash
