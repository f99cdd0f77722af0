// SPDX-License-Identifier: MIT
#include <optional>

#include "base/byte_order.h"
#include "picture/decode/CGifCodes.h"
#include "picture/decode/CIndexCanvas.h"
#include "picture/decode/decoders.h"
#include "picture/decode/palette.h"

namespace picture_decoders {
namespace {

using byte_order::At8, byte_order::Le16;

constexpr std::size_t kScreenEnd = 13, kDescriptor = 10;
constexpr std::uint32_t kExtension = 0x21, kImage = 0x2C, kGraphicControl = 0xF9;

std::size_t PaletteCount(std::uint32_t flags) {
    return (flags & 0x80) != 0 ? std::size_t{2} << (flags & 7) : 0;
}

struct CGifFrame {
    std::size_t at = 0;  ///< of its descriptor
    std::optional<std::uint32_t> transparent;
};

/** The first frame; none when there is none. */
std::optional<CGifFrame> FindFrame(CBytes bytes) {
    CGifFrame frame;
    frame.at = kScreenEnd + PaletteCount(At8(bytes, 10)) * 3;
    while (At8(bytes, frame.at) == kExtension) {
        if (At8(bytes, frame.at + 1) == kGraphicControl && (At8(bytes, frame.at + 3) & 1) != 0)
            frame.transparent = At8(bytes, frame.at + 6);
        for (frame.at += 2; At8(bytes, frame.at) != 0;) frame.at += At8(bytes, frame.at) + 1;
        ++frame.at;
    }
    if (At8(bytes, frame.at) != kImage || frame.at + kDescriptor > bytes.size()) return std::nullopt;
    return frame;
}

/** The rows of an interlaced frame in the order of the file: every eighth, those between, and so on. */
class CRowOrder {
  public:
    CRowOrder(std::size_t height, bool isInterlaced) : m_height(height), m_step(isInterlaced ? 8 : 1) {}
    [[nodiscard]] std::size_t Row() const { return m_row; }
    [[nodiscard]] bool IsAtEnd() const { return m_row >= m_height; }
    void Advance() {
        m_row += m_step;
        while (m_row >= m_height && m_step > 2) {
            m_row = m_isFirstPass ? 4 : m_step / 4;
            if (!m_isFirstPass) m_step /= 2;
            m_isFirstPass = false;
        }
    }

  private:
    std::size_t m_height, m_step;
    std::size_t m_row = 0;
    bool m_isFirstPass = true;
};

CStatus ReadFrame(CGifCodes& codes, bool isInterlaced, CIndexCanvas& canvas) {
    for (CRowOrder order(canvas.Height(), isInterlaced); !order.IsAtEnd(); order.Advance()) {
        for (std::size_t x = 0; x < canvas.Width(); ++x) {
            const int index = codes.Next();
            if (index < 0) {
                if (codes.IsPastEnd()) return EndsEarly();
                if (codes.IsDamaged()) return DataIsDamaged();
                return CDone{};  // what it leaves out shows the background
            }
            canvas.Set(x, order.Row(), static_cast<std::uint32_t>(index));
        }
    }
    return CDone{};
}

CPalette ReadPalette(CBytes bytes, const CGifFrame& frame) {
    const std::uint32_t screenFlags = At8(bytes, 10), flags = At8(bytes, frame.at + 9);
    CPalette palette;
    if (PaletteCount(flags) > 0) {
        palette.SetRgb(bytes, frame.at + kDescriptor, PaletteCount(flags));
    } else {
        palette.SetRgb(bytes, kScreenEnd, PaletteCount(screenFlags));
    }
    if (frame.transparent) {
        CRgba colour = palette[*frame.transparent];
        colour[3] = 0;
        palette.Set(*frame.transparent, colour);
    }
    return palette;
}

/** Sets the row of the screen that shows a row of the frame. */
void SetFrameRow(std::span<std::uint8_t> row, std::size_t left, CBytes indices, const CPalette& palette) {
    for (std::size_t x = 0; x < indices.size(); ++x)
        SetPixel(row, left + x, palette[static_cast<std::size_t>(indices[x])]);
}

}  // namespace

CDecoded DecodeGif(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits) {
    const std::optional<CGifFrame> frame = FindFrame(bytes);
    if (!frame) return EndsEarly();
    const std::size_t left = Le16(bytes, frame->at + 1), top = Le16(bytes, frame->at + 3);
    const std::size_t width = Le16(bytes, frame->at + 5), height = Le16(bytes, frame->at + 7);
    constexpr std::uint64_t kPixelsOfByte = 4096;
    if (width == 0 || height == 0) return HeaderIsDamaged();
    const std::uint64_t pixels = std::max<std::uint64_t>(width * height, claim.width * claim.height);
    if (pixels > kPixelsOfByte * bytes.size()) return ClaimsTooMuch();
    if (width * height > limits.pixels) return IsTooLarge();
    CResult<CPictureRows> rows = CPictureRows::Make(claim, limits);
    if (!rows) return rows.Error();

    const std::uint32_t flags = At8(bytes, frame->at + 9);
    CIndexCanvas canvas(width, height,
                        static_cast<std::uint8_t>(frame->transparent.value_or(At8(bytes, 11))));
    CGifCodes codes(CByteReader(bytes, frame->at + kDescriptor + PaletteCount(flags) * 3));
    if (CStatus read = ReadFrame(codes, (flags & 0x40) != 0, canvas); !read) return read.Error();
    const CPalette palette = ReadPalette(bytes, *frame);
    for (std::size_t y = 0; y < claim.height; ++y) {
        const std::span<std::uint8_t> row = rows.Value().Begin(y);
        if (y >= top && y - top < height) SetFrameRow(row, left, canvas.Row(y - top), palette);
        rows.Value().End(y);
    }
    return std::move(rows).Value().Take();
}

}  // namespace picture_decoders
