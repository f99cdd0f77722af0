// SPDX-License-Identifier: MIT
#pragma once

class wxTopLevelWindow;

/** Shows a window for the first time in its full size. With Show alone the window is tiny until the desktop
 * has told the size of its border, and GTK prints warnings about a menu bar that does not fit. */
void ShowFirst(wxTopLevelWindow& window);
