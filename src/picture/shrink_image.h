// SPDX-License-Identifier: MIT
#pragma once

#include "picture/CImage.h"

/** The picture made so much smaller that its longer side has at most sidePx pixels, each the mean of what it covers.
 * A picture that fits stays as it is. */
[[nodiscard]] CImage ShrinkImage(CImage image, int sidePx);
