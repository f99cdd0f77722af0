// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "picture/picture_formats.h"

/** A picture file as it goes into an export that many programs read. */
struct CPictureBytes {
    EPictureFormat format = EPictureFormat::Unknown;  ///< Jpeg or Png
    int width = 0, height = 0;
    std::vector<std::byte> bytes;  ///< empty: it must be written anew
};

/** The picture as it was found, without what describes it (where and when it was taken, colour profiles, which way up):
 * every program then decodes it to the same pixels, and nobody learns more than these show. No bytes for a file that
 * programs do not decode alike: neither JPEG of one or three components nor PNG, or damaged. */
[[nodiscard]] CPictureBytes BarePicture(std::span<const std::byte> file);
