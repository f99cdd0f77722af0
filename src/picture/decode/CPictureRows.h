// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <span>
#include <vector>

#include "picture/decode/decoders.h"

namespace picture_decoders {

using CRgba = std::array<std::uint8_t, 4>;

/** By how much the sides of that picture must be divided to fit: 1, 2, 4 or 8. TooLarge: it does not fit at all, or
 * has more than maxPixels pixels. */
[[nodiscard]] CResult<int> ReductionFor(const CPictureClaim& claim, const CDecodeLimits& limits,
                                        std::uint64_t maxPixels);

/** How long a side is after it was divided. */
[[nodiscard]] constexpr std::uint64_t ReducedSide(std::uint64_t side, int reduction) {
    const auto divisor = static_cast<std::uint64_t>(reduction);
    return (side + divisor - 1) / divisor;
}

/** Takes a picture's rows of full width, each once, from the top down or from the bottom up, and makes the decoded
 * picture of them: as they are, or each square of reduction x reduction pixels averaged. */
class CPictureRows {
  public:
    /** Checks the claim, takes the memory. Errors are ReductionFor's. */
    [[nodiscard]] static CResult<CPictureRows> Make(const CPictureClaim& claim, const CDecodeLimits& limits);
    /** Of a size that fits. */
    CPictureRows(std::uint64_t width, std::uint64_t height, int reduction);

    [[nodiscard]] std::size_t Width() const { return m_width; }
    [[nodiscard]] std::size_t Height() const { return m_height; }
    [[nodiscard]] int Reduction() const { return m_reduction; }
    /** The RGBA bytes of row y, 0 to begin with unless it is not reduced and was begun before. The caller fills them
     * and calls End, before the next Begin. */
    [[nodiscard]] std::span<std::uint8_t> Begin(std::size_t y);
    void End(std::size_t y);

    [[nodiscard]] image_codec::CDecodedImage Take() &&;
    /** For formats whose writers often say that there is alpha and leave it 0: that is opaque then. */
    [[nodiscard]] image_codec::CDecodedImage TakeWithDoubtfulAlpha() &&;

  private:
    void WriteAverages(std::size_t outY, std::size_t blockHeight);

    std::size_t m_width, m_height;
    int m_reduction;
    CImage m_image;
    std::vector<std::uint8_t> m_row;    ///< where rows are averaged: the one at hand
    std::vector<std::uint32_t> m_sums;  ///< and the channels of the blocks that it lies in
    std::size_t m_rowsSummed = 0;
};

/** For decoders that can give nothing but the whole: fill gets its RGBA bytes, 0 to begin with, and they are averaged
 * where the picture must be smaller. */
[[nodiscard]] CDecoded DecodeWhole(const CPictureClaim& claim, const CDecodeLimits& limits,
                                   const std::function<CStatus(std::span<std::uint8_t>)>& fill);

/** Sets a pixel of a row; nothing when x lies outside. */
inline void SetPixel(std::span<std::uint8_t> row, std::size_t x, const CRgba& colour) {
    if (x < row.size() / 4) std::memcpy(&row[x * 4], colour.data(), 4);
}

}  // namespace picture_decoders
