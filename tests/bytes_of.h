// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

inline std::span<const std::byte> BytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

/** Bytes that no packer makes smaller: always the same for the same seed. */
inline std::string NoiseOf(std::size_t size, std::uint64_t seed = 1) {
    std::string noise(size, '\0');
    for (char& c : noise) {
        seed = seed * 6364136223846793005ULL + 1442695040888963407ULL;
        c = static_cast<char>(seed >> 56);
    }
    return noise;
}
