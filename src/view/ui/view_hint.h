// SPDX-License-Identifier: MIT
#pragma once

struct CImage;

/** Draws a picture over the viewport, pixel for pixel, blended by its alpha (colours not premultiplied). left, top: of
 * its place, from the viewport's top left corner. An empty one draws nothing. Restores state and matrices. */
void DrawOverView(const CImage& picture, int left, int top);
/** The same over the middle of the viewport. */
void DrawViewHint(const CImage& hint);
