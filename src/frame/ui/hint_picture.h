// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "picture/CImage.h"

class wxWindow;

/** Draws a text into a transparent picture, in framebuffer pixels of a window, readable on a background of
 * the given colour (0..1). Lines too long for the window are wrapped. */
[[nodiscard]] CImage MakeHintPicture(const wxWindow& window, const std::wstring& text, float red, float green,
                                     float blue);
