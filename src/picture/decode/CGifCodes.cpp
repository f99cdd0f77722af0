// SPDX-License-Identifier: MIT
#include "picture/decode/CGifCodes.h"

namespace picture_decoders {

CGifCodes::CGifCodes(CByteReader reader) : m_reader(reader), m_indexBits(m_reader.U8()) {
    m_isDamaged = m_indexBits < 2 || m_indexBits >= kMostBits;
    m_isAtEnd = m_isDamaged;
    if (!m_isDamaged) Clear();
}

std::uint32_t CGifCodes::ReadByte() {
    if (m_blockLeft == 0) m_blockLeft = m_reader.U8();
    if (m_blockLeft == 0) {
        m_isAtEnd = true;
        return 0;
    }
    --m_blockLeft;
    return m_reader.U8();
}

std::uint32_t CGifCodes::ReadCode() {
    while (m_bitsThere < m_codeBits && !m_isAtEnd) {
        m_bitBuffer |= ReadByte() << m_bitsThere;
        m_bitsThere += 8;
    }
    const std::uint32_t code = m_bitBuffer & ((1U << m_codeBits) - 1);
    m_bitBuffer >>= m_codeBits;
    m_bitsThere -= m_codeBits;
    return code;
}

void CGifCodes::Clear() {
    m_codeBits = m_indexBits + 1;
    m_nextCode = (1U << m_indexBits) + 2;
    m_lastCode = kMostCodes;
}

int CGifCodes::Next() {
    while (m_stacked == 0) {
        if (m_isAtEnd || m_reader.IsPastEnd()) return -1;
        const std::uint32_t clear = 1U << m_indexBits, end = clear + 1, code = ReadCode();
        if (m_isAtEnd || m_reader.IsPastEnd()) return -1;
        if (code == clear) {
            Clear();
        } else if (code == end || !Unpack(code)) {
            m_isAtEnd = true;
        }
    }
    return m_stack[--m_stacked];
}

bool CGifCodes::Unpack(std::uint32_t code) {
    const std::uint32_t roots = 1U << m_indexBits;
    const bool isNext = code == m_nextCode && m_lastCode != kMostCodes && code < kMostCodes;
    m_isDamaged = !isNext && code >= (m_lastCode == kMostCodes ? roots : m_nextCode);
    if (m_isDamaged) return false;
    if (isNext) m_stack[m_stacked++] = static_cast<std::uint16_t>(m_firstOfLast);
    std::uint32_t at = isNext ? m_lastCode : code;
    // Each code's prefix is smaller than the code, so the chain ends.
    for (; at >= roots + 2 && m_stacked < m_stack.size() - 1; at = m_prefix[at])
        m_stack[m_stacked++] = m_suffix[at];
    m_stack[m_stacked++] = static_cast<std::uint16_t>(at);
    Learn(at);
    m_lastCode = code;
    m_firstOfLast = at;
    return true;
}

void CGifCodes::Learn(std::uint32_t firstIndex) {
    // A full table stays as it is until it is cleared.
    if (m_lastCode == kMostCodes || m_nextCode >= kMostCodes) return;
    m_prefix[m_nextCode] = static_cast<std::uint16_t>(m_lastCode);
    m_suffix[m_nextCode] = static_cast<std::uint16_t>(firstIndex);
    ++m_nextCode;
    if (m_nextCode == 1U << m_codeBits && m_codeBits < kMostBits) ++m_codeBits;
}

}  // namespace picture_decoders
