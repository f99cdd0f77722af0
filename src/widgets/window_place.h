// SPDX-License-Identifier: MIT
#pragma once

#include <span>

/** A rectangle in device-independent pixels. */
struct CPlaceRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const CPlaceRect&) const = default;
};

/** Computes where a window is placed when it is opened again; needs no window. */
namespace window_place {

/** Changes a place so that the user can see and drag the window: no larger than the screen that shows most of
 * it, no smaller than a title bar needs, and moved onto that screen unless enough of its title bar is on a
 * screen already. A place on no screen moves to the nearest. screens: the part of each screen that windows
 * may use, the main screen first; if empty, only the size is corrected. Accepts any numbers. */
[[nodiscard]] CPlaceRect BringOntoScreen(const CPlaceRect& place, std::span<const CPlaceRect> screens);

}  // namespace window_place
