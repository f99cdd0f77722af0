// SPDX-License-Identifier: MIT
#pragma once

struct CImage;

/** Draws a picture over the middle of the viewport, pixel for pixel, blended by its alpha (colours not
 * premultiplied). An empty one draws nothing. Restores state and matrices. */
void DrawViewHint(const CImage& hint);
