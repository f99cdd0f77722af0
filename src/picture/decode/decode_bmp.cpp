// SPDX-License-Identifier: MIT
#include "base/byte_order.h"
#include "picture/decode/CBitChannel.h"
#include "picture/decode/CByteReader.h"
#include "picture/decode/CIndexCanvas.h"
#include "picture/decode/decoders.h"
#include "picture/decode/palette.h"

namespace picture_decoders {
namespace {

using byte_order::Le16, byte_order::Le32;

constexpr std::size_t kFileHeader = 14;
enum ECompression : std::uint32_t { kPlain = 0, kRle8 = 1, kRle4 = 2, kMasks = 3, kMasksWithAlpha = 6 };

struct CBmpHeader {
    std::uint32_t size = 0;  ///< of the header behind the file's
    std::uint32_t bits = 0;
    std::uint32_t compression = kPlain;
    bool isTopDown = false;
    std::size_t entryBytes = 4;  ///< of a colour in the palette
    std::size_t paletteAt = 0, colours = 0, dataAt = 0;

    [[nodiscard]] bool HasMasks() const { return compression == kMasks || compression == kMasksWithAlpha; }
    [[nodiscard]] bool IsRle() const { return compression == kRle8 || compression == kRle4; }
};

/** Palettes may be shorter than the bits allow, or said to be shorter or longer than they are: what is there
 * counts. */
void FindPaletteAndData(CBytes bytes, CBmpHeader& header) {
    const std::size_t most = header.bits <= 8 ? std::size_t{1} << header.bits : 0;
    const std::uint32_t said = header.size >= 36 ? Le32(bytes, 46) : 0;
    header.colours = said == 0 || said > most ? most : said;
    header.paletteAt = kFileHeader + header.size;
    if (header.size == 40 && header.compression == kMasks) header.paletteAt += 12;
    if (header.size == 40 && header.compression == kMasksWithAlpha) header.paletteAt += 16;
    header.dataAt = Le32(bytes, 10);
    if (header.dataAt < header.paletteAt)
        header.dataAt = header.paletteAt + header.colours * header.entryBytes;
    // How many colours are said to be there is wrong more often than where the pixels begin.
    header.colours = std::min(most, (header.dataAt - header.paletteAt) / header.entryBytes);
}

CBmpHeader ReadHeader(CBytes bytes) {
    CBmpHeader header;
    header.size = Le32(bytes, 14);
    if (header.size == 12) {
        header.bits = Le16(bytes, 24);
        header.entryBytes = 3;
    } else {
        header.bits = Le16(bytes, 28);
        header.compression = header.size >= 20 ? Le32(bytes, 30) : kPlain;
        header.isTopDown = (Le32(bytes, 22) & 0x80000000U) != 0;
    }
    FindPaletteAndData(bytes, header);
    return header;
}

bool IsRead(const CBmpHeader& header) {
    const std::uint32_t bits = header.bits;
    switch (header.compression) {
        case kPlain:
            return bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
        case kRle8:
            return bits == 8 && !header.isTopDown;
        case kRle4:
            return bits == 4 && !header.isTopDown;
        case kMasks:
        case kMasksWithAlpha:
            return bits == 16 || bits == 32;
        default:
            return false;
    }
}

CPalette ReadPalette(CBytes bytes, const CBmpHeader& header) {
    CPalette palette;
    for (std::size_t i = 0; i < header.colours; ++i) {
        CByteReader reader(bytes, header.paletteAt + i * header.entryBytes);
        const std::uint32_t colour = reader.Le(3);
        palette.Set(i, {static_cast<std::uint8_t>(colour >> 16), static_cast<std::uint8_t>(colour >> 8),
                        static_cast<std::uint8_t>(colour), 255});
    }
    return palette;
}

/** The fourth byte of 32 bits counts as alpha though the format has none there: where writers do not mean it, they
 * leave it 0 everywhere, and the picture is opaque, or see DropAlphaOfEdges. */
CBitChannels ChannelsOf(CBytes bytes, const CBmpHeader& header) {
    if (header.HasMasks()) {
        const bool hasAlpha = header.size >= 56 || header.compression == kMasksWithAlpha;
        const auto mask = [bytes](std::size_t i) { return Le32(bytes, 54 + i * 4); };
        return {CBitChannel(mask(0)), CBitChannel(mask(1)), CBitChannel(mask(2)),
                CBitChannel(hasAlpha ? mask(3) : 0, 255)};
    }
    if (header.bits == 16)
        return {CBitChannel(0x7C00), CBitChannel(0x3E0), CBitChannel(0x1F), CBitChannel(0, 255)};
    return {CBitChannel(0xFF0000), CBitChannel(0xFF00), CBitChannel(0xFF),
            CBitChannel(header.bits == 32 ? 0xFF000000U : 0, 255)};
}

/** Some converters write 255 inside of a picture and a little less along its edges. Nobody means that, and it would show
 * as seams. */
void DropAlphaOfEdges(CImage& image) {
    constexpr std::uint8_t kLittleLess = 200;
    if (image.width < 3 || image.height < 3) return;
    for (int y = 0; y < image.height; ++y) {
        const bool isEdgeRow = y == 0 || y == image.height - 1;
        for (int x = 0; x < image.width; ++x) {
            const bool isEdge = isEdgeRow || x == 0 || x == image.width - 1;
            if (image.Pixel(x, y)[3] < (isEdge ? kLittleLess : 255)) return;
        }
    }
    for (std::size_t i = 3; i < image.rgba.size(); i += 4) image.rgba[i] = 255;
}

CDecoded DecodeRows(CBytes bytes, const CBmpHeader& header, const CPictureClaim& claim,
                    const CDecodeLimits& limits) {
    const std::size_t lineBytes = static_cast<std::size_t>((claim.width * header.bits + 31) / 32 * 4);
    const std::size_t usedOfLine = static_cast<std::size_t>((claim.width * header.bits + 7) / 8);
    const std::size_t needed = (static_cast<std::size_t>(claim.height) - 1) * lineBytes + usedOfLine;
    if (header.dataAt > bytes.size() || bytes.size() - header.dataAt < needed) return EndsEarly();
    CResult<CPictureRows> rows = CPictureRows::Make(claim, limits);
    if (!rows) return rows.Error();
    const CPalette palette = ReadPalette(bytes, header);
    const CBitChannels channels = ChannelsOf(bytes, header);
    for (std::size_t line = 0; line < claim.height; ++line) {
        const std::size_t y = header.isTopDown ? line : claim.height - 1 - line;
        const CBytes data = bytes.subspan(header.dataAt + line * lineBytes, usedOfLine);
        const std::span<std::uint8_t> row = rows.Value().Begin(y);
        if (header.bits <= 8) SetRow(row, data, header.bits, palette);
        CByteReader pixels(data);
        for (std::size_t x = 0; header.bits > 8 && x < claim.width; ++x)
            SetPixel(row, x, ColourOf(channels, pixels.Le(header.bits / 8)));
        rows.Value().End(y);
    }
    image_codec::CDecodedImage decoded = std::move(rows).Value().TakeWithDoubtfulAlpha();
    if (!header.HasMasks()) DropAlphaOfEdges(decoded.image);
    return decoded;
}

/** Unpacks RLE4 and RLE8 into a canvas whose row 0 is the picture's lowest. */
class CRunReader {
  public:
    CRunReader(CByteReader reader, std::uint32_t bits, CIndexCanvas& canvas)
        : m_reader(reader), m_bits(bits), m_canvas(canvas) {}

    /** False when the bytes end before the last row. */
    bool Read() {
        while (!m_isAtEnd && m_y < m_canvas.Height() && !m_reader.IsPastEnd()) {
            const std::uint32_t count = m_reader.U8(), value = m_reader.U8();
            if (count > 0) {
                SetRun(count, value);
            } else if (value > 2) {
                SetLiterals(value);
            } else {
                Move(value);
            }
        }
        return !m_reader.IsPastEnd() || m_y + 1 >= m_canvas.Height();
    }

  private:
    /** Spends no time on what lies beside the picture, where a file may have any number of runs. */
    void SetRun(std::uint32_t count, std::uint32_t value) {
        const std::size_t seen =
            std::min<std::size_t>(count, m_canvas.Width() - std::min(m_x, m_canvas.Width()));
        for (std::uint32_t i = 0; i < seen; ++i) m_canvas.Set(m_x + i, m_y, Part(value, i));
        m_x += count;
    }
    void SetLiterals(std::uint32_t count) {
        std::uint32_t value = 0;
        for (std::uint32_t i = 0; i < count; ++i) {
            if (m_bits == 8 || i % 2 == 0) value = m_reader.U8();
            m_canvas.Set(m_x++, m_y, Part(value, i));
        }
        if ((count * m_bits + 7) / 8 % 2 == 1) m_reader.Skip(1);
    }
    /** 0 ends the line, 1 the picture, 2 moves on without painting. */
    void Move(std::uint32_t how) {
        m_isAtEnd = how == 1;
        if (how == 0) {
            m_x = 0;
            ++m_y;
        } else if (how == 2) {
            m_x += m_reader.U8();
            m_y += m_reader.U8();
        }
    }
    [[nodiscard]] std::uint32_t Part(std::uint32_t value, std::uint32_t i) const {
        return m_bits == 8 ? value : i % 2 == 0 ? value >> 4 : value & 15;
    }

    CByteReader m_reader;
    std::uint32_t m_bits;
    CIndexCanvas& m_canvas;
    std::size_t m_x = 0, m_y = 0;
    bool m_isAtEnd = false;
};

CDecoded DecodeRuns(CBytes bytes, const CBmpHeader& header, const CPictureClaim& claim,
                    const CDecodeLimits& limits) {
    constexpr std::uint64_t kPixelsOfByte = 128;  // 255 of two; what is jumped over hardly adds to it
    if (claim.width * claim.height > kPixelsOfByte * bytes.size()) return ClaimsTooMuch();
    CResult<CPictureRows> rows = CPictureRows::Make(claim, limits);
    if (!rows) return rows.Error();
    CIndexCanvas canvas(claim.width, claim.height, 0);
    if (!CRunReader(CByteReader(bytes, header.dataAt), header.bits, canvas).Read()) return EndsEarly();
    const CPalette palette = ReadPalette(bytes, header);
    for (std::size_t y = 0; y < claim.height; ++y) {
        SetRow(rows.Value().Begin(y), canvas.Row(claim.height - 1 - y), 8, palette);
        rows.Value().End(y);
    }
    return std::move(rows).Value().Take();
}

}  // namespace

CDecoded DecodeBmp(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits) {
    const CBmpHeader header = ReadHeader(bytes);
    if (!IsRead(header)) return KindIsNotRead();
    return header.IsRle() ? DecodeRuns(bytes, header, claim, limits)
                          : DecodeRows(bytes, header, claim, limits);
}

}  // namespace picture_decoders
