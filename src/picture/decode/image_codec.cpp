// SPDX-License-Identifier: MIT
#include "picture/decode/image_codec.h"

#include <png.h>
#include <turbojpeg.h>

#include <algorithm>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/plugin_function.h"
#include "picture/decode/dds_image.h"
#include "picture/decode/wx_image_codecs.h"
#include "picture/image_probe.h"

namespace image_codec {
namespace {

using image_probe::EFormat;
using CBytes = std::span<const std::byte>;

struct CTjDeleter {
    void operator()(void* handle) const { (void)tjDestroy(handle); }  // it has no failure to tell
};

CError Damaged(std::string why) {
    return {EErrorCode::BadFormat, std::move(why), {}};
}

CImage MakeImage(int width, int height) {
    CImage image{width, height, {}};
    image.rgba.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    return image;
}

CResult<CImage> DecodePng(CBytes bytes) {
    png_image header = {};
    header.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&header, bytes.data(), bytes.size()) == 0) {
        return Damaged(static_cast<const char*>(header.message));
    }
    const std::unique_ptr<png_image, decltype(&png_image_free)> release(&header, &png_image_free);
    header.format = PNG_FORMAT_RGBA;
    CImage image = MakeImage(static_cast<int>(header.width), static_cast<int>(header.height));
    if (png_image_finish_read(&header, nullptr, image.rgba.data(), 0, nullptr) == 0) {
        return Damaged(static_cast<const char*>(header.message));
    }
    return image;
}

// Printers' colours, stored inverted as everybody but the JPEG standard does.
void CmykToRgba(std::vector<std::uint8_t>& pixels) {
    for (std::size_t i = 0; i + 3 < pixels.size(); i += 4) {
        const unsigned black = pixels[i + 3];
        for (std::size_t k = 0; k < 3; ++k)
            pixels[i + k] = static_cast<std::uint8_t>(pixels[i + k] * black / 255);
        pixels[i + 3] = 255;
    }
}

CResult<CImage> DecodeJpeg(CBytes bytes) {
    const std::unique_ptr<void, CTjDeleter> decoder(tjInitDecompress());
    int width = 0, height = 0, sampling = 0, colours = 0;
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    if (!decoder ||
        tjDecompressHeader3(decoder.get(), data, bytes.size(), &width, &height, &sampling, &colours) != 0) {
        return Damaged(tjGetErrorStr2(decoder.get()));
    }
    const bool cmyk = colours == TJCS_CMYK || colours == TJCS_YCCK;
    CImage image = MakeImage(width, height);
    const int outcome = tjDecompress2(decoder.get(), data, bytes.size(), image.rgba.data(), width, 0, height,
                                      cmyk ? TJPF_CMYK : TJPF_RGBA, TJFLAG_LIMITSCANS);
    if (outcome != 0 && tjGetErrorCode(decoder.get()) == TJERR_FATAL)
        return Damaged(tjGetErrorStr2(decoder.get()));
    if (cmyk) CmykToRgba(image.rgba);
    return image;
}

// Loaded at the first need and kept. Null when the plug-in or the toolkit is not installed.
FDecodeWithWx WxDecoder() {
    static const auto decoder =
        reinterpret_cast<FDecodeWithWx>(FunctionOfPlugin("orbivue_wximage_codecs.so", kDecodeWithWxName));
    return decoder;
}

CResult<CImage> DecodeOther(EFormat format, CBytes bytes) {
    if (format == EFormat::Dds) return dds_image::Decode(bytes);
    const CError endsEarly = Damaged(lng::Mark("the picture's data ends early"));
    if (format == EFormat::Tga && !image_probe::IsTgaWhole(bytes)) return endsEarly;
    std::vector<std::byte> firstFrame;
    if (format == EFormat::Gif) {
        // The decoder would unpack every frame of an animation, without any limit; it gets the first alone.
        const std::size_t end = image_probe::FirstGifFrameEnd(bytes);
        if (end == 0) return endsEarly;
        firstFrame.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(end));
        firstFrame.push_back(std::byte{0x3B});
        bytes = firstFrame;
    }
    const FDecodeWithWx decode = WxDecoder();
    if (decode == nullptr)
        return CError{EErrorCode::Unsupported, lng::Mark("the decoder of this picture is not installed"), {}};
    CImage image;
    if (!decode(format, bytes.data(), bytes.size(), &image))
        return Damaged(lng::Mark("the picture's data is damaged"));
    return image;
}

}  // namespace

CResult<CDecodedImage> DecodeImage(std::span<const std::byte> bytes, std::string_view nameHint,
                                   const CDecodeLimits& limits) {
    const CResult<CPictureClaim> claim = ClaimOf(bytes, nameHint);
    if (!claim) return claim.Error();
    const auto [format, width, height] = claim.Value();
    constexpr std::uint64_t kSide = kMaxSide;
    if (width > kSide || height > kSide || width * height * 4 > std::min(limits.bytes, kMaxDecodedBytes))
        return CError{EErrorCode::TooLarge, lng::Mark("the picture is too large"), {}};
    try {
        CResult<CImage> image = format == EFormat::Png    ? DecodePng(bytes)
                                : format == EFormat::Jpeg ? DecodeJpeg(bytes)
                                                          : DecodeOther(format, bytes);
        if (!image) return image.Error();
        return CDecodedImage{std::move(image).Value(), 1};
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, lng::Mark("not enough memory for the picture"), {}};
    }
}

CResult<CDecodedImage> ReadImageFile(std::string_view path, const CDecodeLimits& limits) {
    const CResult<std::vector<std::byte>> bytes = file_util_ex::ReadWholeFile(path, kMaxFileBytes);
    if (!bytes) return bytes.Error();
    CResult<CDecodedImage> image = DecodeImage(bytes.Value(), path, limits);
    if (image) return image;
    CError error = image.Error();
    error.where = path;
    return error;
}

}  // namespace image_codec
