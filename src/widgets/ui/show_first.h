// SPDX-License-Identifier: MIT
#pragma once

class wxTopLevelWindow;

/** Shows a window for the first time, laid out in its own size from the beginning. Show alone begins with a
 * window as small as a dot until the desktop has told how thick its frame is, and GTK complains on the error
 * output of a menu bar that it should lay out in that. */
void ShowFirst(wxTopLevelWindow& window);
