// SPDX-License-Identifier: MIT
#pragma once

#include "picture/CImage.h"

/** A picture scaled so that it just covers width x height pixels, its sides in proportion, and cut to that size
 * about its middle. In its own size it stays as it is, byte for byte. Transparent pixels do not colour those beside them.
 * Empty when one of the two is. Throws std::bad_alloc. */
[[nodiscard]] CImage CoverWithPicture(const CImage& image, int width, int height);
