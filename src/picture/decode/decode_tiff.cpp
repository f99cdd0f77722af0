// SPDX-License-Identifier: MIT
#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "picture/decode/CPictureRows.h"
#include "picture/decode/check_tiff.h"
#include "picture/decode/decoders.h"

namespace picture_decoders {
namespace {

struct CTiffDeleter {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};
using CTiff = std::unique_ptr<TIFF, CTiffDeleter>;

/** The file that libtiff sees; nothing of it can be written. */
struct CTiffBytes {
    CBytes bytes;
    std::uint64_t at = 0;
};

tmsize_t Read(thandle_t file, void* to, tmsize_t count) {
    auto& source = *static_cast<CTiffBytes*>(file);
    const CBytes left = source.bytes.subspan(std::min<std::uint64_t>(source.at, source.bytes.size()));
    const CBytes part =
        left.first(std::min(left.size(), static_cast<std::size_t>(std::max<tmsize_t>(count, 0))));
    if (!part.empty()) std::memcpy(to, part.data(), part.size());
    source.at += part.size();
    return static_cast<tmsize_t>(part.size());
}

toff_t Seek(thandle_t file, toff_t offset, int whence) {
    auto& source = *static_cast<CTiffBytes*>(file);
    const std::uint64_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? source.at : source.bytes.size();
    source.at = from + offset;
    return source.at;
}

/** Takes no block of memory over maxBytes, but the few that libtiff needs itself and what is as long as the file. */
CTiff Open(CTiffBytes& source, std::uint64_t maxBytes) {
    constexpr std::uint64_t kItsOwn = 64 << 10;
    const std::uint64_t maxBlock = std::max({maxBytes, kItsOwn, std::uint64_t{source.bytes.size()}});
    const std::unique_ptr<TIFFOpenOptions, CTiffDeleter> options(TIFFOpenOptionsAlloc());
    if (!options) return nullptr;
    const TIFFErrorHandlerExtR quiet = [](TIFF*, void*, const char*, const char*, va_list) { return 1; };
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(maxBlock));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), quiet, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), quiet, nullptr);
    const auto write = [](thandle_t, void*, tmsize_t) { return tmsize_t{0}; };
    const auto close = [](thandle_t) { return 0; };
    const auto size = [](thandle_t file) { return toff_t{static_cast<CTiffBytes*>(file)->bytes.size()}; };
    constexpr const char* kReadWithoutMapping = "rm";
    return CTiff(TIFFClientOpenExt("", kReadWithoutMapping, &source, Read, write, Seek, close, size, nullptr,
                                   nullptr, options.get()));
}

/** A value of the directory, or what stands for it when it is not there. */
std::uint16_t Short(TIFF* tiff, std::uint32_t tag) {
    std::uint16_t value = 0;
    (void)TIFFGetFieldDefaulted(tiff, tag, &value);  // 0 without one
    return value;
}
std::uint32_t Long(TIFF* tiff, std::uint32_t tag) {
    std::uint32_t value = 0;
    (void)TIFFGetField(tiff, tag, &value);  // 0 without one
    return value;
}

/** Compressions whose unpackers stand in libtiff itself or are zlib's. */
bool IsReadCompression(std::uint16_t compression) {
    constexpr std::uint16_t kRead[] = {COMPRESSION_NONE,      COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3,
                                       COMPRESSION_CCITTFAX4, COMPRESSION_LZW,      COMPRESSION_ADOBE_DEFLATE,
                                       COMPRESSION_PACKBITS,  COMPRESSION_DEFLATE};
    return std::ranges::find(kRead, compression) != std::end(kRead);
}

/** Strips and tiles may share bytes: each of thousands all of the file, which libtiff would go through as often. Some
 * writers say that they are longer than they are, by as much as they were packed. */
CStatus CheckPacked(TIFF* tiff, std::uint64_t fileBytes) {
    constexpr std::uint64_t kMostTimes = 16;
    const std::uint64_t most = std::min(kMostTimes * fileBytes, 2 * image_codec::kMaxFileBytes);
    const std::uint32_t count = TIFFIsTiled(tiff) == 0 ? TIFFNumberOfStrips(tiff) : TIFFNumberOfTiles(tiff);
    std::uint64_t total = 0;
    for (std::uint32_t i = 0; i < count && total <= most; ++i)
        total += std::min(TIFFGetStrileByteCount(tiff, i), fileBytes);
    return total > most ? CStatus(HeaderIsDamaged()) : CDone{};
}

/** What unpacking takes in memory, and in all. */
CStatus CheckUnpacked(TIFF* tiff, const CPictureClaim& claim, std::uint64_t maxBytes) {
    const std::uint64_t pixelBits =
        std::uint64_t{Short(tiff, TIFFTAG_SAMPLESPERPIXEL)} * Short(tiff, TIFFTAG_BITSPERSAMPLE);
    if ((claim.width * pixelBits + 7) / 8 * claim.height > maxBytes) return IsTooLarge();
    if (TIFFIsTiled(tiff) == 0) {
        const std::uint64_t strip = TIFFStripSize64(tiff);
        if (strip == 0) return HeaderIsDamaged();
        return strip > maxBytes ? CStatus(IsTooLarge()) : CDone{};
    }
    const std::uint64_t width = Long(tiff, TIFFTAG_TILEWIDTH), height = Long(tiff, TIFFTAG_TILELENGTH);
    constexpr std::uint64_t kSide = image_codec::kMaxSide;
    if (width == 0 || height == 0 || TIFFTileSize64(tiff) == 0) return HeaderIsDamaged();
    if (width > kSide || height > kSide) return IsTooLarge();
    const std::uint64_t across = (claim.width + width - 1) / width,
                        down = (claim.height + height - 1) / height;
    if (TIFFTileSize64(tiff) > maxBytes || (across * width * pixelBits + 7) / 8 * down * height > maxBytes)
        return IsTooLarge();
    return CDone{};
}

CStatus CheckKind(TIFF* tiff, const CPictureClaim& claim) {
    if (Long(tiff, TIFFTAG_IMAGEWIDTH) != claim.width || Long(tiff, TIFFTAG_IMAGELENGTH) != claim.height)
        return HeaderIsDamaged();
    const std::uint16_t samples = Short(tiff, TIFFTAG_SAMPLESPERPIXEL);
    // CIE L*a*b and its kin take long to convert, and no texture has them.
    if (Short(tiff, TIFFTAG_PHOTOMETRIC) > PHOTOMETRIC_YCBCR) return KindIsNotRead();
    if (samples < 1 || samples > 5 || Short(tiff, TIFFTAG_BITSPERSAMPLE) > 16 ||
        !IsReadCompression(Short(tiff, TIFFTAG_COMPRESSION)))
        return KindIsNotRead();
    return CDone{};
}

/** Whether colours are stored multiplied by their alpha. */
bool IsPremultiplied(TIFF* tiff) {
    std::uint16_t count = 0;
    std::uint16_t* kinds = nullptr;
    (void)TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds);  // 0 without one
    return count > 0 && kinds != nullptr && kinds[0] == EXTRASAMPLE_ASSOCALPHA;
}

void DivideByAlpha(std::uint8_t* pixel) {
    const unsigned alpha = pixel[3];
    for (std::size_t k = 0; alpha != 0 && k < 3; ++k)
        pixel[k] = static_cast<std::uint8_t>(std::min((pixel[k] * 255U + alpha / 2) / alpha, 255U));
}

/** libtiff's picture has a number for each pixel. */
void ToBytes(std::span<std::uint8_t> rgba, bool isPremultiplied) {
    for (std::size_t i = 0; i + 3 < rgba.size(); i += 4) {
        std::uint32_t value = 0;
        std::memcpy(&value, &rgba[i], 4);
        for (std::size_t k = 0; k < 4; ++k) rgba[i + k] = static_cast<std::uint8_t>(value >> (8 * k));
        if (isPremultiplied) DivideByAlpha(&rgba[i]);
    }
}

CStatus ReadPixels(TIFF* tiff, const CPictureClaim& claim, std::span<std::uint8_t> rgba) {
    TIFFRGBAImage image;
    std::array<char, 1024> message{};  // as long as libtiff wants it
    if (TIFFRGBAImageBegin(&image, tiff, 1, message.data()) == 0) return KindIsNotRead();
    const std::unique_ptr<TIFFRGBAImage, decltype(&TIFFRGBAImageEnd)> end(&image, &TIFFRGBAImageEnd);
    image.req_orientation = ORIENTATION_TOPLEFT;
    // Its table multiplies colours by alpha; ours leaves them.
    for (std::size_t i = 0; image.UaToAa != nullptr && i < 65536; ++i)
        image.UaToAa[i] = static_cast<std::uint8_t>(i & 0xFF);
    auto* raster = reinterpret_cast<std::uint32_t*>(rgba.data());
    if (TIFFRGBAImageGet(&image, raster, static_cast<std::uint32_t>(claim.width),
                         static_cast<std::uint32_t>(claim.height)) == 0)
        return DataIsDamaged();
    ToBytes(rgba, IsPremultiplied(tiff));
    return CDone{};
}

}  // namespace

CDecoded DecodeTiff(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits) {
    if (CStatus sound = CheckTiffDirectory(bytes); !sound) return sound.Error();
    const std::uint64_t maxBytes = limits.pixels * 4;
    CTiffBytes source{bytes};
    const CTiff tiff = Open(source, maxBytes);
    if (!tiff) return HeaderIsDamaged();
    if (CStatus isRead = CheckKind(tiff.get(), claim); !isRead) return isRead.Error();
    if (CStatus fits = CheckUnpacked(tiff.get(), claim, maxBytes); !fits) return fits.Error();
    if (CStatus isBounded = CheckPacked(tiff.get(), bytes.size()); !isBounded) return isBounded.Error();
    return DecodeWhole(claim, limits,
                       [&](std::span<std::uint8_t> rgba) { return ReadPixels(tiff.get(), claim, rgba); });
}

}  // namespace picture_decoders
