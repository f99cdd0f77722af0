// SPDX-License-Identifier: MIT
#include "base/byte_order.h"
#include "picture/decode/CByteReader.h"
#include "picture/decode/decoders.h"
#include "picture/decode/palette.h"

namespace picture_decoders {
namespace {

using byte_order::At8, byte_order::Le16;

constexpr std::size_t kHeader = 128, kHeaderColoursAt = 16, kTrailer = 769;

struct CPcxHeader {
    std::uint32_t bits = 0, planes = 0;
    std::size_t planeBytes = 0;  ///< of a line

    [[nodiscard]] std::size_t LineBytes() const { return planes * planeBytes; }
};

CPcxHeader ReadHeader(CBytes bytes) {
    return {At8(bytes, 3), At8(bytes, 65), Le16(bytes, 66)};
}

bool IsRead(const CPcxHeader& header) {
    const std::uint32_t bits = header.bits, planes = header.planes;
    if (bits == 1) return planes >= 1 && planes <= 4;
    if (bits == 8) return planes == 1 || planes == 3 || planes == 4;
    return (bits == 2 || bits == 4) && planes == 1;
}

/** Those of a program that wrote none. */
CPalette EgaColours() {
    CPalette palette;
    for (std::uint32_t i = 0; i < 16; ++i) {
        const auto level = [i](std::uint32_t bit) {
            return static_cast<std::uint8_t>(((i & bit) != 0 ? 170 : 0) + (i >= 8 ? 85 : 0));
        };
        palette.Set(i, {level(4), level(2), level(1), 255});
    }
    palette.Set(6, {170, 85, 0, 255});
    return palette;
}

bool HasHeaderColours(CBytes bytes) {
    std::uint32_t seen = 0;
    for (std::size_t at = kHeaderColoursAt; at < kHeaderColoursAt + 48; ++at) seen |= At8(bytes, at);
    constexpr std::uint32_t kVersionWithoutColours = 3;
    return seen != 0 && At8(bytes, 1) != kVersionWithoutColours;
}

CPalette ReadPalette(CBytes bytes, const CPcxHeader& header) {
    CPalette palette;
    if (header.bits == 8) {
        constexpr std::uint32_t kMark = 12;
        const bool hasTrailer =
            bytes.size() >= kHeader + kTrailer && At8(bytes, bytes.size() - kTrailer) == kMark;
        for (std::size_t i = 0; !hasTrailer && i < 256; ++i) {
            const auto grey = static_cast<std::uint8_t>(i);
            palette.Set(i, {grey, grey, grey, 255});
        }
        if (hasTrailer) palette.SetRgb(bytes, bytes.size() - kTrailer + 1, 256);
    } else if (HasHeaderColours(bytes)) {
        palette.SetRgb(bytes, kHeaderColoursAt, 16);
    } else if (header.bits * header.planes == 1) {
        palette.Set(1, {255, 255, 255, 255});
    } else {
        palette = EgaColours();
    }
    return palette;
}

/** Gives the unpacked bytes in the order of the file; runs go on from plane to plane and line to line. */
class CPcxBytes {
  public:
    explicit CPcxBytes(CBytes bytes) : m_reader(bytes, kHeader) {}
    std::byte Next() {
        while (m_left == 0 && !m_reader.IsPastEnd()) {
            m_value = m_reader.U8();
            m_left = 1;
            if (m_value >= 0xC0) {
                m_left = m_value & 0x3F;
                m_value = m_reader.U8();
            }
        }
        m_left -= m_left > 0 ? 1 : 0;
        return static_cast<std::byte>(m_value);
    }
    [[nodiscard]] bool IsPastEnd() const { return m_reader.IsPastEnd(); }

  private:
    CByteReader m_reader;
    std::uint32_t m_left = 0, m_value = 0;
};

void SetColourRow(std::span<std::uint8_t> row, CBytes line, const CPcxHeader& header) {
    for (std::size_t x = 0; x < row.size() / 4; ++x) {
        const auto plane = [&](std::size_t i) {
            return static_cast<std::uint8_t>(byte_order::At8(line, i * header.planeBytes + x));
        };
        SetPixel(row, x, {plane(0), plane(1), plane(2), header.planes == 4 ? plane(3) : std::uint8_t{255}});
    }
}

/** Each plane has one bit of the index, the first the lowest. */
void SetPlaneRow(std::span<std::uint8_t> row, CBytes line, const CPcxHeader& header,
                 const CPalette& palette) {
    for (std::size_t x = 0; x < row.size() / 4; ++x) {
        std::uint32_t index = 0;
        for (std::size_t i = 0; i < header.planes; ++i)
            index |= PackedValue(line.subspan(i * header.planeBytes, header.planeBytes), x, 1) << i;
        SetPixel(row, x, palette[index]);
    }
}

}  // namespace

CDecoded DecodePcx(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits) {
    const CPcxHeader header = ReadHeader(bytes);
    if (!IsRead(header)) return KindIsNotRead();
    if (header.planeBytes * 8 < claim.width * header.bits) return HeaderIsDamaged();
    constexpr std::uint64_t kBytesOfByte = 32;  // 63 of two
    const std::uint64_t unpacked = header.LineBytes() * claim.height;
    if (unpacked > kBytesOfByte * bytes.size()) return ClaimsTooMuch();
    if (unpacked > limits.pixels * 4) return IsTooLarge();
    CResult<CPictureRows> rows = CPictureRows::Make(claim, limits);
    if (!rows) return rows.Error();
    const CPalette palette = ReadPalette(bytes, header);
    CPcxBytes source(bytes);
    std::vector<std::byte> line(header.LineBytes());
    for (std::size_t y = 0; y < claim.height && !source.IsPastEnd(); ++y) {
        for (std::byte& value : line) value = source.Next();
        const std::span<std::uint8_t> row = rows.Value().Begin(y);
        if (header.bits == 8 && header.planes > 1) {
            SetColourRow(row, line, header);
        } else if (header.planes > 1) {
            SetPlaneRow(row, line, header, palette);
        } else {
            SetRow(row, line, header.bits, palette);
        }
        rows.Value().End(y);
    }
    if (source.IsPastEnd()) return EndsEarly();
    return std::move(rows).Value().TakeWithDoubtfulAlpha();
}

}  // namespace picture_decoders
