// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>

#include "base/CResult.h"
#include "picture/CImage.h"

/** Reads DDS, the format of DirectX's textures. Source: Microsoft, "Programming Guide for DDS" (Direct3D). */
namespace dds_image {

/** The first picture of a DDS file: its first face or slice at full size. Packed as DXT1 (whose fourth colour
 * may be transparent), DXT3 or DXT5, or plain in 8 to 32 bits a pixel as grey or by bit masks. The caller has
 * checked the size that image_probe::ClaimOf tells. BadFormat: damaged or cut short. Unsupported: another
 * kind of pixels, which the message names. */
[[nodiscard]] CResult<CImage> Decode(std::span<const std::byte> bytes);

}  // namespace dds_image
