// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

/** A rectangle in window pixels, origin top left. One that was dragged to the left or upwards has left >
 * right or top > bottom; Normalized() puts that right. */
class C2DRect {
  public:
    C2DRect() = default;
    C2DRect(double left, double top, double right, double bottom)
        : left(left), top(top), right(right), bottom(bottom) {}
    C2DRect(const C2DRect&) = default;
    C2DRect& operator=(const C2DRect&) = default;
    virtual ~C2DRect() = default;

    /** The same corners with left <= right and top <= bottom. */
    [[nodiscard]] C2DRect Normalized() const {
        return {std::min(left, right), std::min(top, bottom), std::max(left, right), std::max(top, bottom)};
    }

    double left = 0, top = 0, right = 0, bottom = 0;
};
