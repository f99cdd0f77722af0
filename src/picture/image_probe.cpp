// SPDX-License-Identifier: MIT
#include "picture/image_probe.h"

#include <algorithm>
#include <cstdlib>

#include "base/byte_order.h"
#include "base/text/lng.h"
#include "files/file_util_ex.h"

namespace image_probe {
namespace {

using CBytes = std::span<const std::byte>;

using byte_order::At8, byte_order::Be16, byte_order::Be32, byte_order::Le16, byte_order::Le32;

struct CSize {
    std::uint64_t width = 0;
    std::uint64_t height = 0;
};

bool StartsWith(CBytes bytes, std::string_view text) {
    return bytes.size() >= text.size() &&
           std::ranges::equal(std::as_bytes(std::span(text)), bytes.first(text.size()));
}

// "BM" begins many a text; the header that follows has one of a few lengths.
bool LooksLikeBmp(CBytes bytes) {
    const std::uint32_t header = Le32(bytes, 14);
    return StartsWith(bytes, "BM") && (header == 12 || (header >= 16 && header <= 124));
}

bool LooksLikePcx(CBytes bytes) {
    const std::uint32_t bits = At8(bytes, 3);
    return bytes.size() > 128 && At8(bytes, 0) == 10 && At8(bytes, 1) <= 5 && At8(bytes, 2) == 1 &&
           (bits == 1 || bits == 2 || bits == 4 || bits == 8);
}

bool LooksLikeTga(CBytes bytes) {
    const std::uint32_t map = At8(bytes, 1);
    const std::uint32_t type = At8(bytes, 2);
    const std::uint32_t bits = At8(bytes, 16);
    const bool mapped = type == 1 || type == 9;
    const bool known = mapped || type == 2 || type == 3 || type == 10 || type == 11;
    const bool depth = bits == 8 || bits == 15 || bits == 16 || bits == 24 || bits == 32;
    return bytes.size() > 18 && map <= 1 && known && (!mapped || map == 1) && depth && Le16(bytes, 12) > 0 &&
           Le16(bytes, 14) > 0;
}

CSize BmpSize(CBytes bytes) {
    if (Le32(bytes, 14) == 12) return {Le16(bytes, 18), Le16(bytes, 20)};
    // Signed: a negative height means rows from the top.
    const auto side = [bytes](std::size_t at) {
        return static_cast<std::uint64_t>(std::llabs(static_cast<std::int32_t>(Le32(bytes, at))));
    };
    return {side(18), side(22)};
}

CSize PcxSize(CBytes bytes) {
    const std::uint32_t left = Le16(bytes, 4), top = Le16(bytes, 6), right = Le16(bytes, 8),
                        bottom = Le16(bytes, 10);
    if (right < left || bottom < top) return {};
    return {right - left + 1, bottom - top + 1};
}

CSize TiffSize(CBytes bytes) {
    const bool little = StartsWith(bytes, "II");
    const auto read16 = [=](std::size_t at) { return little ? Le16(bytes, at) : Be16(bytes, at); };
    const auto read32 = [=](std::size_t at) { return little ? Le32(bytes, at) : Be32(bytes, at); };
    CSize size;
    const std::size_t directory = read32(4);
    const std::uint32_t count = directory < bytes.size() ? read16(directory) : 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t entry = directory + 2 + i * std::size_t{12};
        const std::uint32_t value = read16(entry + 2) == 3 ? read16(entry + 8) : read32(entry + 8);
        const std::uint32_t tag = read16(entry);
        if (tag == 256) size.width = value;
        if (tag == 257) size.height = value;
    }
    return size;
}

std::size_t ColourTableBytes(std::uint32_t flags) {
    return (flags & 0x80) != 0 ? std::size_t{3} << ((flags & 7) + 1) : 0;
}

// Behind a chain of data blocks, each led by its length; past the end when the chain is cut.
std::size_t BehindBlocks(CBytes bytes, std::size_t at) {
    while (at < bytes.size() && At8(bytes, at) != 0) at += At8(bytes, at) + 1;
    return at + 1;
}

// Where the first image descriptor stands; past the end when there is none.
std::size_t GifImageStart(CBytes bytes) {
    std::size_t at = 13 + ColourTableBytes(At8(bytes, 10));
    while (at < bytes.size() && At8(bytes, at) == 0x21) at = BehindBlocks(bytes, at + 2);
    return At8(bytes, at) == 0x2C ? at : bytes.size();
}

// The screen's size, or where it has none that of the first frame.
CSize GifSize(CBytes bytes) {
    if (Le16(bytes, 6) > 0 && Le16(bytes, 8) > 0) return {Le16(bytes, 6), Le16(bytes, 8)};
    const std::size_t image = GifImageStart(bytes);
    return {Le16(bytes, image + 5), Le16(bytes, image + 7)};
}

CSize SgiSize(CBytes bytes) {
    const bool isOneRow = Be16(bytes, 4) == 1;
    return {Be16(bytes, 6), isOneRow ? 1 : Be16(bytes, 8)};
}

// The frame header, whose marker is one of C0 to CF but for three that mean something else.
CSize JpegSize(CBytes bytes) {
    for (std::size_t at = 2; at + 9 < bytes.size();) {
        const std::uint32_t marker = At8(bytes, at + 1);
        const bool isFrame =
            marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        const bool hasNoLength = marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
        if (At8(bytes, at) != 0xFF || marker == 0 || marker == 0xFF) {
            ++at;  // not a marker: some files have bytes between them
        } else if (isFrame) {
            return {Be16(bytes, at + 7), Be16(bytes, at + 5)};
        } else {
            at += hasNoLength ? 2 : 2 + std::size_t{Be16(bytes, at + 2)};
        }
    }
    return {};
}

CSize SizeOf(EFormat format, CBytes bytes) {
    switch (format) {
        case EFormat::Jpeg:
            return JpegSize(bytes);
        case EFormat::Png:
            return {Be32(bytes, 16), Be32(bytes, 20)};
        case EFormat::Tga:
            return {Le16(bytes, 12), Le16(bytes, 14)};
        case EFormat::Bmp:
            return BmpSize(bytes);
        case EFormat::Gif:
            return GifSize(bytes);
        case EFormat::Tiff:
            return TiffSize(bytes);
        case EFormat::Pcx:
            return PcxSize(bytes);
        case EFormat::Sgi:
            return SgiSize(bytes);
        case EFormat::Dds:
            return {Le32(bytes, 16), Le32(bytes, 12)};
        case EFormat::Unknown:
            break;
    }
    return {};
}

}  // namespace

EFormat FormatOf(std::span<const std::byte> bytes, std::string_view nameHint) {
    if (const EFormat signedAs = FormatOfSignature(bytes); signedAs != EFormat::Unknown) return signedAs;
    if (LooksLikeBmp(bytes)) return EFormat::Bmp;
    if (FormatOfEnding(file_util_ex::GetFileExt(nameHint)) == EFormat::Tga) return EFormat::Tga;
    if (LooksLikePcx(bytes)) return EFormat::Pcx;
    return LooksLikeTga(bytes) ? EFormat::Tga : EFormat::Unknown;
}

CResult<CPictureClaim> ClaimOf(std::span<const std::byte> bytes, std::string_view nameHint) {
    const EFormat format = FormatOf(bytes, nameHint);
    if (format == EFormat::Unknown)
        return CError{EErrorCode::Unsupported, lng::Mark("not a kind of picture that is read"), {}};
    const CSize size = SizeOf(format, bytes);
    if (size.width == 0 || size.height == 0)
        return CError{EErrorCode::BadFormat, lng::Mark("the picture has no size"), {}};
    return CPictureClaim{format, size.width, size.height};
}

}  // namespace image_probe
