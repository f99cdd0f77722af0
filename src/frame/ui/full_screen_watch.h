// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

class wxTopLevelWindow;

/** Calls changed, as long as the window lives, whenever it has come to fill the screen or has ceased to, at
 * whoever's wish: the desktop has keys and menus for that, of which the toolkit sends no event. */
void WatchFullScreen(wxTopLevelWindow& window, std::function<void()> changed);
