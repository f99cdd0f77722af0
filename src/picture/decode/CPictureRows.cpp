// SPDX-License-Identifier: MIT
#include "picture/decode/CPictureRows.h"

#include <algorithm>

namespace picture_decoders {

CResult<int> ReductionFor(const CPictureClaim& claim, const CDecodeLimits& limits, std::uint64_t maxPixels) {
    if (claim.width * claim.height > maxPixels) return IsTooLarge();
    for (const int reduction : {1, 2, 4, 8}) {
        const std::uint64_t pixels =
            ReducedSide(claim.width, reduction) * ReducedSide(claim.height, reduction);
        if (pixels * 4 <= std::min(limits.bytes, image_codec::kMaxDecodedBytes)) return reduction;
    }
    return IsTooLarge();
}

CResult<CPictureRows> CPictureRows::Make(const CPictureClaim& claim, const CDecodeLimits& limits) {
    const CResult<int> reduction = ReductionFor(claim, limits, limits.pixels);
    if (!reduction) return reduction.Error();
    return CPictureRows(claim.width, claim.height, reduction.Value());
}

CPictureRows::CPictureRows(std::uint64_t width, std::uint64_t height, int reduction)
    : m_width(width), m_height(height), m_reduction(reduction) {
    m_image.width = static_cast<int>(ReducedSide(width, reduction));
    m_image.height = static_cast<int>(ReducedSide(height, reduction));
    m_image.rgba.resize(static_cast<std::size_t>(m_image.width) * static_cast<std::size_t>(m_image.height) *
                        4);
    if (reduction == 1) return;
    m_row.resize(m_width * 4);
    m_sums.resize(static_cast<std::size_t>(m_image.width) * 4);
}

std::span<std::uint8_t> CPictureRows::Begin(std::size_t y) {
    if (m_reduction == 1) return std::span(m_image.rgba).subspan(y * m_width * 4, m_width * 4);
    std::ranges::fill(m_row, std::uint8_t{0});
    return m_row;
}

void CPictureRows::End(std::size_t y) {
    if (m_reduction == 1) return;
    const auto side = static_cast<std::size_t>(m_reduction);
    for (std::size_t x = 0, block = 0; x < m_width; block += 4) {
        for (const std::size_t end = std::min(x + side, m_width); x < end; ++x) {
            for (std::size_t k = 0; k < 4; ++k) m_sums[block + k] += m_row[x * 4 + k];
        }
    }
    const std::size_t outY = y / side, blockHeight = std::min(side, m_height - outY * side);
    if (++m_rowsSummed == blockHeight) WriteAverages(outY, blockHeight);
}

void CPictureRows::WriteAverages(std::size_t outY, std::size_t blockHeight) {
    const auto side = static_cast<std::size_t>(m_reduction), outWidth = m_sums.size() / 4;
    for (std::size_t x = 0; x < outWidth; ++x) {
        const std::size_t blockWidth = std::min(side, m_width - x * side);
        const auto count = static_cast<std::uint32_t>(std::max<std::size_t>(blockWidth * blockHeight, 1));
        for (std::size_t k = 0; k < 4; ++k) {
            m_image.rgba[(outY * outWidth + x) * 4 + k] =
                static_cast<std::uint8_t>((m_sums[x * 4 + k] + count / 2) / count);
        }
    }
    std::ranges::fill(m_sums, 0U);
    m_rowsSummed = 0;
}

CDecoded DecodeWhole(const CPictureClaim& claim, const CDecodeLimits& limits,
                     const std::function<CStatus(std::span<std::uint8_t>)>& fill) {
    const CResult<int> reduction = ReductionFor(claim, limits, limits.pixels);
    if (!reduction) return reduction.Error();
    const auto turn = WaitForTurn(claim);
    CImage whole{static_cast<int>(claim.width), static_cast<int>(claim.height), {}};
    const auto rowBytes = static_cast<std::size_t>(claim.width * 4);
    whole.rgba.resize(rowBytes * static_cast<std::size_t>(claim.height));
    if (CStatus filled = fill(whole.rgba); !filled) return filled.Error();
    if (reduction.Value() == 1) return image_codec::CDecodedImage{std::move(whole), 1};
    CPictureRows rows(claim.width, claim.height, reduction.Value());
    for (std::size_t y = 0; y < rows.Height(); ++y) {
        std::ranges::copy(std::span(whole.rgba).subspan(y * rowBytes, rowBytes), rows.Begin(y).begin());
        rows.End(y);
    }
    return std::move(rows).Take();
}

image_codec::CDecodedImage CPictureRows::Take() && {
    return {std::move(m_image), m_reduction};
}

image_codec::CDecodedImage CPictureRows::TakeWithDoubtfulAlpha() && {
    std::vector<std::uint8_t>& rgba = m_image.rgba;
    std::uint8_t seen = 0;
    for (std::size_t i = 3; i < rgba.size(); i += 4) seen |= rgba[i];
    for (std::size_t i = 3; seen == 0 && i < rgba.size(); i += 4) rgba[i] = 255;
    return {std::move(m_image), m_reduction};
}

}  // namespace picture_decoders
