// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "picture/picture_formats.h"

/** What the bytes of a picture tell without being decoded. */
namespace image_probe {

using EFormat = EPictureFormat;

/** The format by its signature. TGA has none: bytes without a signature are TGA when nameHint (a file name,
 * may be empty) ends as TGA files do, or when no other format matches and their header is plausible. */
[[nodiscard]] EFormat FormatOf(std::span<const std::byte> bytes, std::string_view nameHint);

/** Width and height in pixels as the header claims them, each the larger where a format has
 * two; 0 when unknown. */
struct CClaim {
    std::uint64_t width = 0;
    std::uint64_t height = 0;
};

/** For Tga, Bmp, Gif, Tiff, Pcx and Dds: the size for which the decoder will allocate memory. */
[[nodiscard]] CClaim ClaimOf(EFormat format, std::span<const std::byte> bytes);

/** False when a TGA's pixels end early, which its decoder does not notice. */
[[nodiscard]] bool IsTgaWhole(std::span<const std::byte> bytes);

/** How many bytes of a GIF its first frame takes, header included; 0 when it has no whole frame. */
[[nodiscard]] std::size_t FirstGifFrameEnd(std::span<const std::byte> bytes);

}  // namespace image_probe
