// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

/** One channel of a pixel: the bits of a mask, brought to 0..255. */
class CBitChannel {
  public:
    explicit CBitChannel(std::uint32_t mask = 0, std::uint8_t ifNone = 0) : m_mask(mask) {
        if (mask == 0) {
            m_values.fill(ifNone);
            return;
        }
        // Of a channel of over eight bits the upper eight count.
        m_shift = std::max(std::countr_zero(mask), static_cast<int>(std::bit_width(mask)) - 8);
        const std::uint32_t largest = mask >> m_shift;
        for (std::uint32_t i = 0; i < m_values.size(); ++i) {
            m_values[i] = static_cast<std::uint8_t>((std::min(i, largest) * 255 + largest / 2) / largest);
        }
    }
    [[nodiscard]] std::uint8_t Of(std::uint32_t pixel) const { return m_values[(pixel & m_mask) >> m_shift]; }

  private:
    std::uint32_t m_mask;
    int m_shift = 0;
    std::array<std::uint8_t, 256> m_values{};
};

/** Red, green, blue, alpha. */
using CBitChannels = std::array<CBitChannel, 4>;

[[nodiscard]] inline std::array<std::uint8_t, 4> ColourOf(const CBitChannels& channels, std::uint32_t pixel) {
    return {channels[0].Of(pixel), channels[1].Of(pixel), channels[2].Of(pixel), channels[3].Of(pixel)};
}
