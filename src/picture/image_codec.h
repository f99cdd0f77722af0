// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "base/CResult.h"
#include "picture/CImage.h"
#include "picture/image_writer.h"

/** Reads pictures: JPEG, PNG, TGA, BMP, GIF (its first frame), TIFF, PCX, DDS (see dds_image). Any thread may
 * call, several at a time. Nothing is logged and no library shows a message. */
namespace image_codec {

constexpr int kMaxSide = 16384;                           ///< pixels
constexpr std::uint64_t kMaxDecodedBytes = 256ULL << 20;  ///< as RGBA
constexpr std::uint64_t kMaxFileBytes = 512ULL << 20;

/** The format is taken from the bytes; where they do not tell, from the extension of nameHint (a file
 * name; it may be empty). Unsupported: a format that is not read, some kinds of DDS among them.
 * TooLarge: a side or the whole over the limits above, found before memory is taken. BadFormat: damaged. A
 * picture whose data ends early is BadFormat, except a JPEG, whose missing rest is grey, as cameras and
 * browsers show it. */
[[nodiscard]] CResult<CImage> DecodeImage(std::span<const std::byte> bytes, std::string_view nameHint);
/** Errors name the path. */
[[nodiscard]] CResult<CImage> ReadImageFile(std::string_view path);

}  // namespace image_codec
