// SPDX-License-Identifier: MIT
#pragma once

#include "base/byte_order.h"
#include "picture/decode/CPictureRows.h"

namespace picture_decoders {

/** 256 colours, opaque black to begin with; any index of eight bits has one. */
class CPalette {
  public:
    CPalette() { m_colours.fill({0, 0, 0, 255}); }
    [[nodiscard]] const CRgba& operator[](std::size_t index) const { return m_colours[index & 0xFF]; }
    /** Nothing when the index is over 255. */
    void Set(std::size_t index, const CRgba& colour) {
        if (index < m_colours.size()) m_colours[index] = colour;
    }
    /** Takes count colours of three bytes, red first; those beyond the end of the bytes are black. */
    void SetRgb(CBytes bytes, std::size_t at, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i, at += 3)
            Set(i, {Byte(bytes, at), Byte(bytes, at + 1), Byte(bytes, at + 2), 255});
    }

  private:
    static std::uint8_t Byte(CBytes bytes, std::size_t at) {
        return static_cast<std::uint8_t>(byte_order::At8(bytes, at));
    }
    std::array<CRgba, 256> m_colours;
};

/** The x-th value of a row of values of 1, 2, 4 or 8 bits, the highest bits of a byte first; 0 beyond its end. */
[[nodiscard]] inline std::uint32_t PackedValue(CBytes row, std::size_t x, std::uint32_t bits) {
    const std::uint32_t first = static_cast<std::uint32_t>(x) * bits;
    return byte_order::At8(row, first / 8) >> (8 - bits - first % 8) & ((1U << bits) - 1);
}

/** Sets a row of indices of 1, 2, 4 or 8 bits. */
inline void SetRow(std::span<std::uint8_t> row, CBytes indices, std::uint32_t bits, const CPalette& palette) {
    for (std::size_t x = 0; x < row.size() / 4; ++x) SetPixel(row, x, palette[PackedValue(indices, x, bits)]);
}

}  // namespace picture_decoders
