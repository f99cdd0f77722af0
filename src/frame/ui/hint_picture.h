// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "picture/CImage.h"

class wxWindow;

/** A text as a see-through picture in framebuffer pixels of a window, to be read on a background of that
 * colour (each channel 0..1). Lines too long for the window are broken. */
[[nodiscard]] CImage MakeHintPicture(const wxWindow& window, const std::wstring& text, float red, float green,
                                     float blue);
