// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "picture/CImage.h"

class wxWindow;

/** Both draw a text into a picture with transparency, in framebuffer pixels of a window, with a larger form of its
 * font. Empty for an empty text. */

/** A hint that is readable on a background of the given colour (0..1). Lines too long for the window are wrapped, words
 * too long are cut in their middle, as paths are. */
[[nodiscard]] CImage MakeHintPicture(const wxWindow& window, const std::wstring& text, float red, float green,
                                     float blue);
/** A caption that is readable on everything: bright letters on a dark panel. Wrapped and cut so that it covers less
 * than half of a view of that size in pixels; text: see CaptionText. */
[[nodiscard]] CImage MakeCaptionPicture(const wxWindow& window, const std::wstring& text, int viewWidth,
                                        int viewHeight);
