// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** What a picture may ask for. */
namespace image_codec {

constexpr int kMaxSide = 16384;                          ///< pixels
constexpr std::uint64_t kMaxDecodedBytes = 64ULL << 20;  ///< as RGBA; drawing takes three times as much again
constexpr std::uint64_t kMaxFileBytes = 129ULL << 20;    ///< kMaxPixels, and a header
/** Pixels of a file, of four bytes each. The time goes with them even where a smaller picture is made of them: decoding
 * that many takes up to half a second. */
constexpr std::uint64_t kMaxPixels = 32ULL << 20;

}  // namespace image_codec
