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

/** Where a window is kept to be when it stands again: no window is needed for this arithmetic. */
namespace window_place {

/** The place, so changed that a person can see and drag the window: no larger than the screen that shows most
 * of it, no smaller than a title bar needs, and moved onto that screen unless a good part of its title bar is
 * on one already. One that is on no screen goes to the nearest. screens: the parts of each that windows may
 * use, the first one being the main one; when there is none, only the size is mended. Any numbers will do. */
[[nodiscard]] CPlaceRect BringOntoScreen(const CPlaceRect& place, std::span<const CPlaceRect> screens);

}  // namespace window_place
