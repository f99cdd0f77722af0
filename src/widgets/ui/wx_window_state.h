// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

class wxTopLevelWindow;
class wxWindow;

/** Stores positions and sizes of windows by name: in a section of the default ini file (CLocalRegStore) with
 * the keys Left, Top, Width, Height, in device-independent pixels, and Maximized. The file is written with
 * the settings when the program ends. Only the thread of the windows may call these functions. */
namespace wx_window_state {

/** Gives the window the place stored under the name, moved onto a screen if it is on none. False, and the
 * window does not change, when none is stored. In both cases the window's normal place is tracked from now
 * on, because SaveState needs it while the window is maximised. Call it once, when the window has its first
 * size. A child window keeps its size and place. */
bool LoadState(wxWindow* window, std::string_view name);
/** Stores the window's place; for a maximised, full-screen or iconised window its last normal place. */
void SaveState(wxWindow* window, std::string_view name);
/** Maximises a window, at once or as soon as it is on the screen. */
void MaximizeFrame(wxTopLevelWindow* frame);

}  // namespace wx_window_state
