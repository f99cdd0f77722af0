// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "base/CResult.h"
#include "picture/picture_formats.h"

/** What the bytes of a picture tell without being decoded. */
namespace image_probe {

using EFormat = EPictureFormat;

/** The format by its signature. TGA has none: bytes without a signature are TGA when nameHint (a file name,
 * may be empty) ends as TGA files do, or when no other format matches and their header is plausible. */
[[nodiscard]] EFormat FormatOf(std::span<const std::byte> bytes, std::string_view nameHint);

/** What a picture's header says of it. */
struct CPictureClaim {
    EFormat format = EFormat::Unknown;
    std::uint64_t width = 0;  ///< pixels, at least 1; no limit is applied
    std::uint64_t height = 0;
};

/** Reads the header alone: nothing is decoded and no memory is taken. nameHint: as FormatOf takes it.
 * Unsupported: a format that is not read. BadFormat: the header does not tell a size. */
[[nodiscard]] CResult<CPictureClaim> ClaimOf(std::span<const std::byte> bytes, std::string_view nameHint);

}  // namespace image_probe
