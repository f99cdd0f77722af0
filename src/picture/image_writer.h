// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "picture/CImage.h"

/** Writes pictures to files, replaced in one step (see CAtomicFile). Paths are UTF-8. Any thread may call. */
namespace image_codec {

/** Without alpha the file has three channels. An empty or inconsistent image is BadArgument. */
[[nodiscard]] CStatus WritePng(std::string_view path, const CImage& image, bool withAlpha);
/** The same into memory. small: takes six times as long for a third less. */
[[nodiscard]] CResult<std::vector<std::byte>> PngBytes(const CImage& image, bool withAlpha,
                                                       bool small = false);
/** quality 1..100. The alpha is left out. */
[[nodiscard]] CStatus WriteJpeg(std::string_view path, const CImage& image, int quality = 90);
/** The same into memory. */
[[nodiscard]] CResult<std::vector<std::byte>> JpegBytes(const CImage& image, int quality = 90);

}  // namespace image_codec
