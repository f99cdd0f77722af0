// SPDX-License-Identifier: MIT
#pragma once

class C2DRect;

/** Draws a translucent rectangle with a black border over the picture. box: start and current corner in
 * window pixels, origin top left. The viewport must be the window's. Restores state and matrices. */
void DrawZoomBox(const C2DRect& box);
