// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/** A picture of indices that may be written in any order. What is written outside of it is dropped. */
class CIndexCanvas {
  public:
    CIndexCanvas(std::size_t width, std::size_t height, std::uint8_t index)
        : m_width(width), m_height(height), m_indices(width * height, index) {}

    [[nodiscard]] std::size_t Width() const { return m_width; }
    [[nodiscard]] std::size_t Height() const { return m_height; }
    void Set(std::size_t x, std::size_t y, std::uint32_t index) {
        if (x < m_width && y < m_height) m_indices[y * m_width + x] = static_cast<std::uint8_t>(index);
    }
    /** y below the height. */
    [[nodiscard]] std::span<const std::byte> Row(std::size_t y) const {
        return std::as_bytes(std::span(m_indices).subspan(y * m_width, m_width));
    }

  private:
    std::size_t m_width, m_height;
    std::vector<std::uint8_t> m_indices;
};
