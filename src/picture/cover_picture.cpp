// SPDX-License-Identifier: MIT
#include "picture/cover_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

#include "base/jobs/parallel_for.h"

namespace {

/** The source pixels that one target pixel is made of: `weights`, from the pixel `first` on. */
struct CTaps {
    int first = 0;
    std::vector<float> weights;
};

float CatmullRom(float x) {
    x = std::abs(x);
    if (x < 1) return (1.5f * x - 2.5f) * x * x + 1;
    if (x < 2) return ((-0.5f * x + 2.5f) * x - 4) * x + 2;
    return 0;
}

/** Taps for `count` target pixels, which lie over `extent` of `size` source pixels, in their middle. */
std::vector<CTaps> TapsFor(int count, double extent, int size) {
    const double step = extent / count, begin = (size - extent) / 2;
    const double widened = std::max(1.0, step);
    std::vector<CTaps> all(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < all.size(); ++i) {
        const double at = begin + (static_cast<double>(i) + 0.5) * step - 0.5;
        const int from = static_cast<int>(std::ceil(at - 2 * widened));
        const int to = static_cast<int>(std::floor(at + 2 * widened));
        CTaps& taps = all[i];
        taps.first = std::clamp(from, 0, size - 1);
        taps.weights.resize(static_cast<std::size_t>(std::clamp(to, 0, size - 1) - taps.first) + 1);
        float sum = 0;
        for (int p = from; p <= to; ++p) {
            const float weight = CatmullRom(static_cast<float>((p - at) / widened));
            // The outermost pixels go on beyond the edge.
            taps.weights[static_cast<std::size_t>(std::clamp(p, 0, size - 1) - taps.first)] += weight;
            sum += weight;
        }
        for (float& weight : taps.weights) weight /= sum;
    }
    return all;
}

/** Averages squares of factor x factor pixels: quick, and what is left to the filter is at most half. */
CImage Averaged(const CImage& image, int factor) {
    CImage result{(image.width + factor - 1) / factor, (image.height + factor - 1) / factor, {}};
    const auto width = static_cast<std::size_t>(result.width);
    result.rgba.resize(width * static_cast<std::size_t>(result.height) * 4);
    ParallelFor(static_cast<std::size_t>(result.height), 0, [&](std::size_t row) {
        const int top = static_cast<int>(row) * factor, bottom = std::min(top + factor, image.height);
        for (std::size_t x = 0; x < width; ++x) {
            const int left = static_cast<int>(x) * factor, right = std::min(left + factor, image.width);
            std::array<std::uint64_t, 4> sum{};
            for (int sy = top; sy < bottom; ++sy) {
                const std::uint8_t* pixel = image.Pixel(left, sy);
                for (int sx = left; sx < right; ++sx, pixel += 4) {
                    for (std::size_t c = 0; c < 3; ++c) sum[c] += pixel[c] * pixel[3];
                    sum[3] += pixel[3];
                }
            }
            const auto count = static_cast<std::uint64_t>((right - left) * (bottom - top));
            std::uint8_t* out = &result.rgba[(row * width + x) * 4];
            for (std::size_t c = 0; c < 3 && sum[3] > 0; ++c)
                out[c] = static_cast<std::uint8_t>((sum[c] + sum[3] / 2) / sum[3]);
            out[3] = static_cast<std::uint8_t>((sum[3] + count / 2) / count);
        }
    });
    return result;
}

std::uint8_t ToByte(float value) {
    return static_cast<std::uint8_t>(std::clamp(value + 0.5f, 0.0f, 255.0f));
}

/** One row of the result: the source's rows are blended into one first, its colours multiplied by alpha. */
void FilterRow(const CImage& image, const CTaps& rows, const std::vector<CTaps>& columns, std::uint8_t* out) {
    const auto width = static_cast<std::size_t>(image.width);
    std::vector<float> blended(width * 4);
    for (std::size_t r = 0; r < rows.weights.size(); ++r) {
        const std::uint8_t* pixel = image.Pixel(0, rows.first + static_cast<int>(r));
        for (std::size_t x = 0; x < width; ++x, pixel += 4) {
            const float weight = rows.weights[r] * static_cast<float>(pixel[3]);
            for (std::size_t c = 0; c < 3; ++c) blended[x * 4 + c] += weight * static_cast<float>(pixel[c]);
            blended[x * 4 + 3] += weight;
        }
    }
    for (const CTaps& taps : columns) {
        std::array<float, 4> sum{};
        const float* from = &blended[static_cast<std::size_t>(taps.first) * 4];
        for (const float weight : taps.weights) {
            for (std::size_t c = 0; c < 4; ++c) sum[c] += weight * from[c];
            from += 4;
        }
        for (std::size_t c = 0; c < 3; ++c) out[c] = sum[3] > 0 ? ToByte(sum[c] / sum[3]) : std::uint8_t{0};
        out[3] = ToByte(sum[3]);
        out += 4;
    }
}

}  // namespace

CImage CoverWithPicture(const CImage& image, int width, int height) {
    if (image.IsEmpty() || width <= 0 || height <= 0) return {};
    if (image.width == width && image.height == height) return image;
    // Source pixels in one target pixel.
    const double step =
        std::min(static_cast<double>(image.width) / width, static_cast<double>(image.height) / height);
    const int factor = static_cast<int>(step);
    if (factor > 1) return CoverWithPicture(Averaged(image, factor), width, height);
    const std::vector<CTaps> columns = TapsFor(width, step * width, image.width);
    const std::vector<CTaps> rows = TapsFor(height, step * height, image.height);
    CImage result{width, height, {}};
    const std::size_t bytes = static_cast<std::size_t>(width) * 4;
    result.rgba.resize(bytes * static_cast<std::size_t>(height));
    ParallelFor(rows.size(), 0,
                [&](std::size_t y) { FilterRow(image, rows[y], columns, &result.rgba[y * bytes]); });
    return result;
}
