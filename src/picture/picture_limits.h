// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** What a picture may ask for. */
namespace image_codec {

constexpr int kMaxSide = 16384;                           ///< pixels
constexpr std::uint64_t kMaxDecodedBytes = 128ULL << 20;  ///< as RGBA
constexpr std::uint64_t kMaxFileBytes = 257ULL << 20;     ///< as many plain pixels as may be, and a header
/** Pixels of a file. The time goes with them even where a smaller picture is made of them: decoding that many
 * takes up to half a second. Formats whose decoders are slower or quicker allow a part of it or more. */
constexpr std::uint64_t kMaxPixels = 64ULL << 20;

}  // namespace image_codec
