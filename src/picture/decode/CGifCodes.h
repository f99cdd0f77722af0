// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "picture/decode/CByteReader.h"

namespace picture_decoders {

/** Unpacks a GIF frame: the palette's indices one after another, packed by LZW with codes of up to 12 bits in blocks of
 * up to 255 bytes. */
class CGifCodes {
  public:
    /** The reader stands at the byte that tells the bits of an index. */
    explicit CGifCodes(CByteReader reader);

    /** The next index; -1 at the end of the frame, or where what follows is none. */
    int Next();
    /** A code that was never given a meaning, or an impossible size. */
    [[nodiscard]] bool IsDamaged() const { return m_isDamaged; }
    /** The file's bytes ended within the frame. */
    [[nodiscard]] bool IsPastEnd() const { return m_reader.IsPastEnd(); }

  private:
    static constexpr std::uint32_t kMostBits = 12, kMostCodes = 1U << kMostBits;

    [[nodiscard]] std::uint32_t ReadByte();
    [[nodiscard]] std::uint32_t ReadCode();
    void Clear();
    bool Unpack(std::uint32_t code);
    void Learn(std::uint32_t firstIndex);

    CByteReader m_reader;
    std::uint32_t m_indexBits;
    std::uint32_t m_blockLeft = 0;
    bool m_isAtEnd = false, m_isDamaged = false;
    std::uint32_t m_bitBuffer = 0, m_bitsThere = 0;
    std::uint32_t m_codeBits = 0, m_nextCode = 0;
    std::uint32_t m_lastCode = kMostCodes;  ///< kMostCodes: none since the last clear
    std::uint32_t m_firstOfLast = 0;        ///< the first index that it stands for
    std::array<std::uint16_t, kMostCodes> m_prefix{}, m_suffix{};
    std::array<std::uint16_t, kMostCodes + 1> m_stack{};  ///< indices to be given yet, the next one last
    std::size_t m_stacked = 0;
};

}  // namespace picture_decoders
