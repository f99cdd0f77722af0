// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>

/** One chunk of a 3DS file: its id and where its contents lie, as offsets into the file. */
struct C3dsChunk {
    std::uint16_t id = 0;
    std::size_t begin = 0;  ///< first byte after the six-byte header
    std::size_t end = 0;    ///< never past the parent's end
};

/** Reads numbers and strings from [begin, end) of some bytes; past the end it returns zeros, and RanOut() is
 * true. Little endian. */
class CByteCursor {
  public:
    CByteCursor(std::span<const std::byte> bytes, std::size_t begin, std::size_t end)
        : m_bytes(bytes), m_position(begin), m_end(end) {}

    [[nodiscard]] std::size_t Position() const { return m_position; }
    [[nodiscard]] std::size_t Left() const { return m_end - m_position; }
    /** True once a read went past the end. */
    [[nodiscard]] bool RanOut() const { return m_ranOut; }

    template <class T>
    [[nodiscard]] T Read() {
        T value{};
        if (Left() < sizeof(T)) {
            m_position = m_end;
            m_ranOut = true;
            return value;
        }
        std::memcpy(&value, m_bytes.data() + m_position, sizeof(T));
        m_position += sizeof(T);
        return value;
    }
    /** Skips count bytes, or all that are left when they are fewer. */
    void Skip(std::size_t count) {
        if (count > Left()) m_ranOut = true;
        m_position += count < Left() ? count : Left();
    }
    /** Bytes up to a zero, which is skipped; without a zero all that are left, and RanOut() is true. */
    [[nodiscard]] std::string ReadString() {
        const char* begin = reinterpret_cast<const char*>(m_bytes.data()) + m_position;
        const std::size_t length = strnlen(begin, Left());
        std::string text(begin, length);
        Skip(length + 1);
        return text;
    }

  private:
    std::span<const std::byte> m_bytes;
    std::size_t m_position;
    std::size_t m_end;
    bool m_ranOut = false;
};

/** Goes through the chunks that lie side by side in [begin, end), and keeps every one inside its parent. */
class CChunkWalker {
  public:
    enum class EEnd {
        Clean,    ///< the last chunk ended where the parent does
        Overrun,  ///< a chunk claimed to reach past its parent and was cut there
        BadSize,  ///< a chunk claimed less than its own header: what follows it cannot be found
        Rest,     ///< fewer bytes than a header were left
    };

    CChunkWalker(std::span<const std::byte> bytes, std::size_t begin, std::size_t end)
        : m_bytes(bytes), m_position(begin), m_end(end) {}

    /** Sets chunk to the next one. False at the end; End() then tells why. */
    [[nodiscard]] bool Next(C3dsChunk& chunk) {
        if (m_position == m_end) return false;
        CByteCursor header(m_bytes, m_position, m_end);
        chunk.id = header.Read<std::uint16_t>();
        const std::size_t size = header.Read<std::uint32_t>();
        if (header.RanOut()) return Stop(EEnd::Rest);
        if (size < kHeaderSize) return Stop(EEnd::BadSize);
        if (size > m_end - m_position) m_ending = EEnd::Overrun;
        chunk.begin = m_position + kHeaderSize;
        chunk.end = size > m_end - m_position ? m_end : m_position + size;
        m_position = chunk.end;
        return true;
    }
    [[nodiscard]] EEnd End() const { return m_ending; }

    static constexpr std::size_t kHeaderSize = 6;

  private:
    bool Stop(EEnd ending) {
        m_ending = ending;
        m_position = m_end;
        return false;
    }

    std::span<const std::byte> m_bytes;
    std::size_t m_position;
    std::size_t m_end;
    EEnd m_ending = EEnd::Clean;
};
