// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/** A picture in memory: 8-bit RGBA, rows top to bottom without padding. Empty when width is 0. */
struct CImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;

    [[nodiscard]] bool IsEmpty() const { return width <= 0 || height <= 0; }
    /** Four bytes: red, green, blue, alpha. x and y must lie inside. */
    [[nodiscard]] const std::uint8_t* Pixel(int x, int y) const {
        return &rgba[(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)) *
                     4];
    }
};
