// SPDX-License-Identifier: MIT
#include "picture/shrink_image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace {

/** The pixels that the part from begin to end covers, of which the first and the last count in part. */
struct CSpan {
    int first = 0, last = 0;
    float begin = 0, end = 0;

    CSpan(int index, float step, int most)
        : begin(static_cast<float>(index) * step), end(static_cast<float>(index + 1) * step) {
        first = std::min(static_cast<int>(begin), most - 1);
        last = std::min(static_cast<int>(std::ceil(end)) - 1, most - 1);
    }
    [[nodiscard]] float Share(int at) const {
        return std::min(end, static_cast<float>(at + 1)) - std::max(begin, static_cast<float>(at));
    }
};

std::array<std::uint8_t, 4> Mean(const CImage& image, const CSpan& across, const CSpan& down) {
    std::array<float, 3> colour{};
    float alpha = 0, area = 0;
    for (int y = down.first; y <= down.last; ++y) {
        for (int x = across.first; x <= across.last; ++x) {
            const std::uint8_t* pixel = image.Pixel(x, y);
            const float share = across.Share(x) * down.Share(y);
            const float weight = share * static_cast<float>(pixel[3]);
            for (std::size_t i = 0; i < 3; ++i) colour[i] += weight * static_cast<float>(pixel[i]);
            alpha += weight;
            area += share;
        }
    }
    std::array<std::uint8_t, 4> mean{};
    if (alpha <= 0 || area <= 0) return mean;
    for (std::size_t i = 0; i < 3; ++i) mean[i] = static_cast<std::uint8_t>(std::lround(colour[i] / alpha));
    mean[3] = static_cast<std::uint8_t>(std::lround(alpha / area));
    return mean;
}

}  // namespace

CImage ShrinkImage(CImage image, int sidePx) {
    const int longer = std::max(image.width, image.height);
    if (image.IsEmpty() || longer <= sidePx || sidePx < 1) return image;
    const float step = static_cast<float>(longer) / static_cast<float>(sidePx);
    const auto shrunk = [&](int side) {
        return std::max(static_cast<int>(std::lround(static_cast<float>(side) / step)), 1);
    };
    CImage small{shrunk(image.width), shrunk(image.height), {}};
    small.rgba.reserve(static_cast<std::size_t>(small.width) * static_cast<std::size_t>(small.height) * 4);
    const float stepX = static_cast<float>(image.width) / static_cast<float>(small.width);
    const float stepY = static_cast<float>(image.height) / static_cast<float>(small.height);
    for (int y = 0; y < small.height; ++y) {
        const CSpan down(y, stepY, image.height);
        for (int x = 0; x < small.width; ++x) {
            const auto mean = Mean(image, CSpan(x, stepX, image.width), down);
            small.rgba.insert(small.rgba.end(), mean.begin(), mean.end());
        }
    }
    return small;
}
