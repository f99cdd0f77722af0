// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

class wxTopLevelWindow;

/** Calls changed whenever the window enters or leaves full screen, until the window is destroyed. This
 * includes changes by the desktop's keys and menus, for which the toolkit sends no event. */
void WatchFullScreen(wxTopLevelWindow& window, std::function<void()> changed);
