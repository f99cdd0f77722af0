// SPDX-License-Identifier: MIT
#include "base/byte_order.h"
#include "picture/decode/CBitChannel.h"
#include "picture/decode/CByteReader.h"
#include "picture/decode/decoders.h"
#include "picture/decode/palette.h"

namespace picture_decoders {
namespace {

using byte_order::At8, byte_order::Le16;

constexpr std::size_t kHeader = 18;

struct CTgaHeader {
    bool isMapped = false, isGrey = false, isPacked = false;
    bool isTopDown = false, isRightToLeft = false;
    bool hasMap = false;
    std::uint32_t bits = 0, mapBits = 0;
    std::size_t mapFirst = 0, mapCount = 0;  ///< the first entry's number; how many there are
    bool oneBitIsAlpha = false;              ///< of 16-bit pixels
    std::size_t mapAt = 0, dataAt = 0;
};

// Where the picture would stand on a screen is ignored: some writers put its height there.
CTgaHeader ReadHeader(CBytes bytes) {
    CTgaHeader header;
    const std::uint32_t type = At8(bytes, 2), descriptor = At8(bytes, 17);
    header.isPacked = type >= 8;
    header.isMapped = type % 8 == 1;
    header.isGrey = type % 8 == 3;
    header.isTopDown = (descriptor & 0x20) != 0;
    header.isRightToLeft = (descriptor & 0x10) != 0;
    header.oneBitIsAlpha = (descriptor & 0x0F) == 1;
    header.bits = At8(bytes, 16);
    header.hasMap = At8(bytes, 1) == 1;
    header.mapFirst = Le16(bytes, 3);
    header.mapCount = header.hasMap ? Le16(bytes, 5) : 0;
    header.mapBits = At8(bytes, 7);
    header.mapAt = kHeader + At8(bytes, 0);
    header.dataAt = header.mapAt + header.mapCount * ((header.mapBits + 7) / 8);
    return header;
}

bool IsColour(std::uint32_t bits) {
    return bits == 15 || bits == 16 || bits == 24 || bits == 32;
}

bool IsRead(CBytes bytes, const CTgaHeader& header) {
    const std::uint32_t type = At8(bytes, 2);
    if (type != 1 && type != 2 && type != 3 && type != 9 && type != 10 && type != 11) return false;
    if (header.isMapped) return header.hasMap && header.bits == 8 && IsColour(header.mapBits);
    if (header.isGrey) return header.bits == 8 || header.bits == 16;
    return IsColour(header.bits);
}

CBitChannels ChannelsOf(const CTgaHeader& header, std::uint32_t bits) {
    if (header.isGrey && !header.isMapped) {
        const CBitChannel grey(0xFF);
        return {grey, grey, grey, CBitChannel(bits == 16 ? 0xFF00 : 0, 255)};
    }
    if (bits <= 16) {
        return {CBitChannel(0x7C00), CBitChannel(0x3E0), CBitChannel(0x1F),
                CBitChannel(header.oneBitIsAlpha ? 0x8000 : 0, 255)};
    }
    return {CBitChannel(0xFF0000), CBitChannel(0xFF00), CBitChannel(0xFF),
            CBitChannel(bits == 32 ? 0xFF000000U : 0, 255)};
}

/** Gives the pixels in the order of the file; runs go on from line to line. */
class CTgaPixels {
  public:
    CTgaPixels(CBytes bytes, const CTgaHeader& header)
        : m_reader(bytes, header.dataAt),
          m_isPacked(header.isPacked),
          m_pixelBytes((header.bits + 7) / 8),
          m_isMapped(header.isMapped),
          m_channels(ChannelsOf(header, header.isMapped ? header.mapBits : header.bits)) {
        CByteReader map(bytes, header.mapAt);
        for (std::size_t i = 0; header.isMapped && i < header.mapCount; ++i)
            m_palette.Set(header.mapFirst + i, ColourOf(m_channels, map.Le((header.mapBits + 7) / 8)));
    }

    CRgba Next() {
        if (!m_isPacked) return Read();
        if (m_left == 0) {
            const std::uint32_t head = m_reader.U8();
            m_left = (head & 0x7F) + 1;
            m_isRun = (head & 0x80) != 0;
            if (m_isRun) m_pixel = Read();
        }
        --m_left;
        return m_isRun ? m_pixel : Read();
    }
    [[nodiscard]] bool IsPastEnd() const { return m_reader.IsPastEnd(); }

  private:
    CRgba Read() {
        const std::uint32_t value = m_reader.Le(m_pixelBytes);
        return m_isMapped ? m_palette[value] : ColourOf(m_channels, value);
    }

    CByteReader m_reader;
    bool m_isPacked;
    std::size_t m_pixelBytes;
    bool m_isMapped;
    CBitChannels m_channels;
    CPalette m_palette;
    std::uint32_t m_left = 0;  ///< pixels of the packet at hand
    bool m_isRun = false;
    CRgba m_pixel{};
};

}  // namespace

CDecoded DecodeTga(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits) {
    const CTgaHeader header = ReadHeader(bytes);
    if (!IsRead(bytes, header)) return KindIsNotRead();
    const std::uint64_t pixels = claim.width * claim.height;
    constexpr std::uint64_t kPixelsOfByte = 128;
    const std::uint64_t left = bytes.size() - std::min(header.dataAt, bytes.size());
    if (header.isPacked && pixels > kPixelsOfByte * left) return EndsEarly();
    if (!header.isPacked && pixels * ((header.bits + 7) / 8) > left) return EndsEarly();
    CResult<CPictureRows> rows = CPictureRows::Make(claim, limits);
    if (!rows) return rows.Error();
    CTgaPixels source(bytes, header);
    for (std::size_t line = 0; line < claim.height && !source.IsPastEnd(); ++line) {
        const std::size_t y = header.isTopDown ? line : claim.height - 1 - line;
        const std::span<std::uint8_t> row = rows.Value().Begin(y);
        for (std::size_t x = 0; x < claim.width; ++x)
            SetPixel(row, header.isRightToLeft ? claim.width - 1 - x : x, source.Next());
        rows.Value().End(y);
    }
    if (source.IsPastEnd()) return EndsEarly();
    return std::move(rows).Value().TakeWithDoubtfulAlpha();
}

}  // namespace picture_decoders
