// SPDX-License-Identifier: MIT
#pragma once

struct CImage;

/** Draws a picture (its alpha counts, colours not multiplied by it) over the middle of the viewport, pixel
 * for pixel. An empty one draws nothing. Leaves state and matrices as they were. */
void DrawViewHint(const CImage& hint);
