// SPDX-License-Identifier: MIT
#include "base/hash_secret.h"

#include <random>

const std::array<std::uint64_t, 4> kHashSecret = [] {
    std::random_device random;
    std::array<std::uint64_t, 4> secret{};
    for (std::uint64_t& number : secret) number = (std::uint64_t{random()} << 32) | random() | 1u;
    return secret;
}();
