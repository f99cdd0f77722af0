// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** What a picture may ask for. */
namespace image_codec {

constexpr int kMaxSide = 16384;                           ///< pixels
constexpr std::uint64_t kMaxDecodedBytes = 256ULL << 20;  ///< as RGBA
constexpr std::uint64_t kMaxFileBytes = 512ULL << 20;

}  // namespace image_codec
