// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "base/CResult.h"
#include "picture/CImage.h"
#include "picture/image_probe.h"
#include "picture/picture_limits.h"

/** Reads pictures: JPEG, PNG, TGA, BMP, GIF (its first frame), TIFF, PCX, SGI, DDS (see docs/picture-formats.md). The bytes
 * may come from a stranger: whatever they are, time and memory stay within the limits. Any thread may call,
 * several at a time. Nothing is logged and no library shows a message. */
namespace image_codec {

using image_probe::ClaimOf;
using image_probe::CPictureClaim;

struct CDecodeLimits {
    std::uint64_t bytes = kMaxDecodedBytes;  ///< of the decoded picture as RGBA
    std::uint64_t pixels = kMaxPixels;       ///< of the file
};

struct CDecodedImage {
    CImage image;
    int reduction = 1;  ///< 1, 2, 4 or 8: the file's sides were divided by it, rounded up, to fit the limits
};

/** The format is taken from the bytes; where they do not tell, from the extension of nameHint (a file
 * name; it may be empty). A picture that does not fit limits.bytes is decoded at a half, a quarter or an eighth
 * of its sides. Memory on the way: up to 210 MB beside it, which only one thread takes at a time.
 *
 * Unsupported: a format or a kind of it that is not read. TooLarge: a side over kMaxSide, or the whole over the
 * limits, found before memory is taken. BadFormat: damaged. A picture whose data ends early is BadFormat, except a
 * JPEG, whose missing rest is grey, as cameras and browsers show it. */
[[nodiscard]] CResult<CDecodedImage> DecodeImage(std::span<const std::byte> bytes, std::string_view nameHint,
                                                 const CDecodeLimits& limits = {});
/** Errors name the path. */
[[nodiscard]] CResult<CDecodedImage> ReadImageFile(std::string_view path, const CDecodeLimits& limits = {});

}  // namespace image_codec
