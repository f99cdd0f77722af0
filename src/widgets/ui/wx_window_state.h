// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

class wxTopLevelWindow;
class wxWindow;

/** Window places and sizes, kept by name: a section of the default ini file (CLocalRegStore) with the keys
 * Left, Top, Width, Height, in device-independent pixels, and Maximized. The file itself is written with the
 * settings, at the program's end. Thread of the windows only. */
namespace wx_window_state {

/** Gives the window the place stored under the name; one that is on no screen now is brought back onto one.
 * False, and the window is as it was, when none is stored. Either way the window's normal place is watched
 * from now on, so that SaveState knows it while the window is maximised: call it once, when the window has
 * its first size. A window inside another one keeps its size and its place there. */
bool LoadState(wxWindow* window, std::string_view name);
/** Stores the place; of a window that is maximised, full screen or iconised the one that it had before. */
void SaveState(wxWindow* window, std::string_view name);
/** At once, or as soon as the frame is on the screen. */
void MaximizeFrame(wxTopLevelWindow* frame);

}  // namespace wx_window_state
