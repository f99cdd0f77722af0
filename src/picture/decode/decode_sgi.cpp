// SPDX-License-Identifier: MIT
#include "base/byte_order.h"
#include "picture/decode/CByteReader.h"
#include "picture/decode/CPictureRows.h"
#include "picture/decode/decoders.h"

namespace picture_decoders {
namespace {

using byte_order::At8, byte_order::Be16, byte_order::Be32;

constexpr std::size_t kHeader = 512;

struct CSgiHeader {
    bool isPacked = false;
    std::size_t sampleBytes = 1;  ///< of two bytes the upper counts, which comes first
    std::size_t width = 0, height = 0;
    std::size_t planes = 0, used = 0;  ///< how many there are; grey, grey and alpha, RGB or RGBA of them
};

CSgiHeader ReadHeader(CBytes bytes, const CPictureClaim& claim) {
    CSgiHeader header;
    header.isPacked = At8(bytes, 2) == 1;
    header.sampleBytes = At8(bytes, 3);
    header.width = static_cast<std::size_t>(claim.width);
    header.height = static_cast<std::size_t>(claim.height);
    header.planes = Be16(bytes, 4) == 3 ? Be16(bytes, 10) : 1;
    header.used = std::min<std::size_t>(header.planes, 4);
    return header;
}

bool IsRead(CBytes bytes, const CSgiHeader& header) {
    const std::uint32_t dimension = Be16(bytes, 4), colourMap = Be32(bytes, 104);
    return At8(bytes, 2) <= 1 && (header.sampleBytes == 1 || header.sampleBytes == 2) && dimension >= 1 &&
           dimension <= 3 && header.planes >= 1 && colourMap == 0;
}

/** Whether the bytes can hold the picture. Packed rows may share them, which real files hardly do. */
bool CanHold(CBytes bytes, const CSgiHeader& header) {
    constexpr std::size_t kSamplesOfByte = 128, kTableEntries = 8;
    const std::size_t left = bytes.size() - std::min(kHeader, bytes.size());
    const std::size_t lines = header.height * header.planes;
    if (!header.isPacked) return lines * header.width * header.sampleBytes <= left;
    return lines * kTableEntries <= left &&
           header.used * header.width * header.height <= kSamplesOfByte * left;
}

/** Sets one channel of a row. */
class CChannelWriter {
  public:
    CChannelWriter(std::span<std::uint8_t> row, std::size_t channel) : m_row(row), m_at(channel) {}
    void Add(std::uint32_t value) {
        if (m_at < m_row.size()) m_row[m_at] = static_cast<std::uint8_t>(value);
        m_at += 4;
    }
    [[nodiscard]] bool IsFull() const { return m_at >= m_row.size(); }

  private:
    std::span<std::uint8_t> m_row;
    std::size_t m_at;
};

/** The upper byte of a sample or a code, or its lower one. */
std::uint32_t Part(CByteReader& reader, std::size_t sampleBytes, bool upper) {
    const std::uint32_t first = reader.U8(), second = sampleBytes == 2 ? reader.U8() : first;
    return upper ? first : second;
}

/** False when the bytes end early. A row that is too short keeps what it had. */
bool UnpackLine(CByteReader reader, std::size_t sampleBytes, CChannelWriter writer) {
    while (!writer.IsFull() && !reader.IsPastEnd()) {
        const std::uint32_t code = Part(reader, sampleBytes, false), count = code & 0x7F;
        if (count == 0) break;
        const bool isRun = (code & 0x80) == 0;
        std::uint32_t value = isRun ? Part(reader, sampleBytes, true) : 0;
        for (std::uint32_t i = 0; i < count; ++i) {
            if (!isRun) value = Part(reader, sampleBytes, true);
            writer.Add(value);
        }
    }
    return !reader.IsPastEnd();
}

bool ReadLine(CBytes bytes, const CSgiHeader& header, std::size_t line, CChannelWriter writer) {
    if (header.isPacked) {
        const std::size_t lines = header.height * header.planes;
        const std::size_t start = Be32(bytes, kHeader + line * 4);
        const std::size_t length = Be32(bytes, kHeader + (lines + line) * 4);
        if (start > bytes.size() || length > bytes.size() - start) return false;
        return UnpackLine(CByteReader(bytes.subspan(start, length)), header.sampleBytes, writer);
    }
    CByteReader reader(bytes, kHeader + line * header.width * header.sampleBytes);
    while (!writer.IsFull()) writer.Add(Part(reader, header.sampleBytes, true));
    return true;
}

/** Grey stands in the first channel, its alpha in the second. */
void SpreadGrey(std::span<std::uint8_t> row, bool hasAlpha) {
    for (std::size_t i = 0; i < row.size(); i += 4) {
        row[i + 3] = hasAlpha ? row[i + 1] : std::uint8_t{255};
        row[i + 1] = row[i + 2] = row[i];
    }
}

}  // namespace

CDecoded DecodeSgi(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits) {
    const CSgiHeader header = ReadHeader(bytes, claim);
    if (!IsRead(bytes, header)) return KindIsNotRead();
    if (!CanHold(bytes, header)) return EndsEarly();
    if (header.used * claim.width * claim.height > limits.pixels * 4) return IsTooLarge();
    CResult<CPictureRows> rows = CPictureRows::Make(claim, limits);
    if (!rows) return rows.Error();
    for (std::size_t line = 0; line < header.height; ++line) {
        const std::size_t y = header.height - 1 - line;
        const std::span<std::uint8_t> row = rows.Value().Begin(y);
        for (std::size_t plane = 0; plane < header.used; ++plane) {
            if (!ReadLine(bytes, header, plane * header.height + line, CChannelWriter(row, plane)))
                return EndsEarly();
        }
        for (std::size_t i = 3; header.used == 3 && i < row.size(); i += 4) row[i] = 255;
        if (header.used < 3) SpreadGrey(row, header.used == 2);
        rows.Value().End(y);
    }
    return std::move(rows).Value().TakeWithDoubtfulAlpha();
}

}  // namespace picture_decoders
