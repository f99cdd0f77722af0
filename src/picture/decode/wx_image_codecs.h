// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "picture/CImage.h"
#include "picture/image_probe.h"

/** The function of the plug-in orbivue_wximage_codecs, which holds the toolkit's decoders. It is a plug-in
 * because the toolkit takes 20 ms to load, and few models have such pictures.
 *
 * Decodes bytes[0..size) as that format (Tga, Bmp, Gif, Tiff or Pcx) into out. False when damaged or out of
 * memory. Any thread may call, several at a time. */
using FDecodeWithWx = bool (*)(image_probe::EFormat format, const std::byte* bytes, std::size_t size,
                               CImage* out);
constexpr const char* kDecodeWithWxName = "OrbivueDecodeWithWx";
