// SPDX-License-Identifier: MIT
#pragma once

class C2DRect;

/** Draws a see-through rectangle with a black border over the picture. box is in window pixels as dragged,
 * origin top left; the viewport must be the window's. Leaves state and matrices as they were. */
void DrawZoomBox(const C2DRect& box);
