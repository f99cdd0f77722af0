// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <optional>
#include <string>

#include "base/byte_order.h"
#include "base/text/lng.h"
#include "files/plugin_function.h"
#include "picture/decode/CBitChannel.h"
#include "picture/decode/CByteReader.h"
#include "picture/decode/CPictureRows.h"
#include "picture/decode/decoders.h"
#include "picture/decode/dxt_blocks.h"

namespace picture_decoders {
namespace {

using byte_order::Le32;

// Where DDS_HEADER and the DDS_PIXELFORMAT in it have what we read, counted from the file's first byte.
constexpr std::size_t kHeaderSizeAt = 4, kFlagsAt = 80, kFourCcAt = 84, kBitsAt = 88, kMasksAt = 92,
                      kPixelsAt = 128;
constexpr std::uint32_t kHeaderSize = 124;
constexpr std::uint32_t kHasAlpha = 0x1, kIsFourCc = 0x4, kIsRgb = 0x40, kIsLuminance = 0x20000;

CError Unsupported(std::string what) {
    return {EErrorCode::Unsupported, "DDS pictures " + std::move(what) + " are not read", {}};
}

/** The code as the file has it, for people. */
std::string CodeText(CBytes bytes) {
    std::string code;
    for (std::size_t at = kFourCcAt; at < kFourCcAt + 4; ++at) {
        const auto c = static_cast<char>(byte_order::At8(bytes, at));
        code += c > ' ' && c < 0x7F ? c : '?';
    }
    return code;
}

std::optional<EDxt> PackingOf(CBytes bytes) {
    const std::string code = CodeText(bytes);
    if (code == "DXT1") return EDxt::Dxt1;
    if (code == "DXT3") return EDxt::Dxt3;
    if (code == "DXT5") return EDxt::Dxt5;
    return std::nullopt;
}

FUnpackDxt Unpacker() {
    static const auto unpack =
        reinterpret_cast<FUnpackDxt>(FunctionOfPlugin("orbivue_dxt_blocks.so", kUnpackDxtName));
    return unpack;
}

/** Copies a row of unpacked blocks, whose first line is y, as far as it lies inside the picture. */
void SetRows(const std::vector<std::uint8_t>& blocks, std::size_t y, CPictureRows& rows) {
    for (std::size_t line = 0; line < std::min<std::size_t>(4, rows.Height() - y); ++line) {
        const std::span<std::uint8_t> row = rows.Begin(y + line);
        for (std::size_t x = 0; x < row.size(); x += 16) {
            std::memcpy(&row[x], &blocks[x / 16 * kDxtUnpackedBytes + line * 16],
                        std::min<std::size_t>(16, row.size() - x));
        }
        rows.End(y + line);
    }
}

CDecoded DecodeDxt(CBytes bytes, EDxt packing, const CPictureClaim& claim, const CDecodeLimits& limits) {
    const FUnpackDxt unpack = Unpacker();
    if (unpack == nullptr)
        return CError{EErrorCode::Unsupported, lng::Mark("the decoder of this picture is not installed"), {}};
    const auto across = static_cast<std::size_t>((claim.width + 3) / 4);
    const auto down = static_cast<std::size_t>((claim.height + 3) / 4);
    const std::size_t rowBytes = across * DxtBlockBytes(packing);
    if (bytes.size() < kPixelsAt || bytes.size() - kPixelsAt < rowBytes * down) return EndsEarly();
    CResult<CPictureRows> rows = CPictureRows::Make(claim, limits);
    if (!rows) return rows.Error();
    std::vector<std::uint8_t> unpacked(across * kDxtUnpackedBytes);
    for (std::size_t row = 0; row < down; ++row) {
        unpack(packing, &bytes[kPixelsAt + row * rowBytes], across, unpacked.data());
        SetRows(unpacked, row * 4, rows.Value());
    }
    return std::move(rows).Value().TakeWithDoubtfulAlpha();
}

CBitChannels ChannelsOf(CBytes bytes, std::uint32_t flags) {
    const auto mask = [&](std::size_t channel) { return Le32(bytes, kMasksAt + channel * 4); };
    const CBitChannel alpha((flags & kHasAlpha) != 0 ? mask(3) : 0, 255), first(mask(0));
    if ((flags & kIsRgb) == 0) return {first, first, first, alpha};  // grey: the first mask is the light's
    return {first, CBitChannel(mask(1)), CBitChannel(mask(2)), alpha};
}

CDecoded DecodePlain(CBytes bytes, std::uint32_t flags, const CPictureClaim& claim,
                     const CDecodeLimits& limits) {
    const std::uint32_t bits = Le32(bytes, kBitsAt);
    if (bits != 8 && bits != 16 && bits != 24 && bits != 32)
        return Unsupported("of " + std::to_string(bits) + " bits a pixel");
    const std::size_t pixelBytes = bits / 8;
    const auto count = static_cast<std::size_t>(claim.width * claim.height);
    // Lines follow one another without a gap; the guide advises against believing the header's pitch.
    if (bytes.size() < kPixelsAt || (bytes.size() - kPixelsAt) / pixelBytes < count) return EndsEarly();
    CResult<CPictureRows> rows = CPictureRows::Make(claim, limits);
    if (!rows) return rows.Error();
    const CBitChannels channels = ChannelsOf(bytes, flags);
    CByteReader reader(bytes, kPixelsAt);
    for (std::size_t y = 0; y < claim.height; ++y) {
        const std::span<std::uint8_t> row = rows.Value().Begin(y);
        for (std::size_t x = 0; x < claim.width; ++x)
            SetPixel(row, x, ColourOf(channels, reader.Le(pixelBytes)));
        rows.Value().End(y);
    }
    return std::move(rows).Value().TakeWithDoubtfulAlpha();
}

}  // namespace

CDecoded DecodeDds(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits) {
    if (Le32(bytes, kHeaderSizeAt) != kHeaderSize) return HeaderIsDamaged();
    const std::uint32_t flags = Le32(bytes, kFlagsAt);
    if ((flags & kIsFourCc) != 0) {
        const std::optional<EDxt> packing = PackingOf(bytes);
        return packing ? DecodeDxt(bytes, *packing, claim, limits)
                       : Unsupported("of the kind " + CodeText(bytes));
    }
    if ((flags & (kIsRgb | kIsLuminance)) != 0) return DecodePlain(bytes, flags, claim, limits);
    return Unsupported("without colours");
}

}  // namespace picture_decoders
