// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

/** Reads a file's bytes one after another and never leaves them: beyond their end everything is 0, and IsPastEnd
 * tells that it was wanted. */
class CByteReader {
  public:
    explicit CByteReader(std::span<const std::byte> bytes, std::size_t at = 0)
        : m_bytes(bytes), m_at(std::min(at, bytes.size())), m_isPastEnd(at > bytes.size()) {}

    std::uint32_t U8() {
        if (m_at < m_bytes.size()) return static_cast<std::uint32_t>(m_bytes[m_at++]);
        m_isPastEnd = true;
        return 0;
    }
    std::uint32_t Le(std::size_t count) {  ///< count 1 to 4 bytes, the lowest first
        std::uint32_t value = 0;
        if (Left() < count) {
            for (std::size_t i = 0; i < count; ++i) value |= U8() << (8 * i);
            return value;
        }
        for (std::size_t i = 0; i < count; ++i)
            value |= static_cast<std::uint32_t>(m_bytes[m_at + i]) << (8 * i);
        m_at += count;
        return value;
    }
    void Skip(std::size_t count) {
        m_isPastEnd = m_isPastEnd || count > Left();
        m_at += std::min(count, Left());
    }
    [[nodiscard]] std::size_t Left() const { return m_bytes.size() - m_at; }
    [[nodiscard]] bool IsPastEnd() const { return m_isPastEnd; }

  private:
    std::span<const std::byte> m_bytes;
    std::size_t m_at;
    bool m_isPastEnd;
};
