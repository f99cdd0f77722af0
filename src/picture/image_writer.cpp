// SPDX-License-Identifier: MIT
#include "picture/image_writer.h"

#include <png.h>
#include <turbojpeg.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>

#include "base/text/lng.h"
#include "files/CAtomicFile.h"
#include "files/file_util_ex.h"

namespace image_codec {
namespace {

CStatus CheckImage(std::string_view path, const CImage& image) {
    constexpr int kMaxJpegSide = 65500;  // the smaller of the two formats' limits
    if (!image.IsEmpty() && image.width <= kMaxJpegSide && image.height <= kMaxJpegSide &&
        image.rgba.size() ==
            static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height) * std::size_t{4}) {
        return CDone{};
    }
    return CError{EErrorCode::BadArgument, lng::Mark("there is no picture to write"), std::string(path)};
}

/** Takes the packed bytes. */
using CSink = std::function<void(std::span<const std::byte>)>;

void WritePart(png_structp png, png_bytep data, png_size_t size) {
    (*static_cast<const CSink*>(png_get_io_ptr(png)))(std::as_bytes(std::span(data, size)));
}

void KeepQuiet(png_structp, png_const_charp) {}
void JumpBack(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}

// Nothing in here may own anything: an error inside the library jumps back to the start.
bool EncodePng(png_structp png, png_infop info, const CImage& image, bool withAlpha, bool small) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;
    const auto width = static_cast<png_uint_32>(image.width);
    const auto height = static_cast<png_uint_32>(image.height);
    png_set_IHDR(png, info, width, height, 8, withAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (!small) {
        // A sixth of the default settings' time and half as many bytes again, on pictures of models.
        png_set_compression_level(png, 1);
        png_set_compression_strategy(png, Z_RLE);
        png_set_filter(png, 0, PNG_FILTER_UP);
    }
    png_set_compression_buffer_size(png, 64 << 10);
    png_write_info(png, info);
    if (!withAlpha) png_set_filler(png, 0, PNG_FILLER_AFTER);
    for (int y = 0; y < image.height; ++y) png_write_row(png, image.Pixel(0, y));
    png_write_end(png, info);
    return true;
}

CStatus PackPng(std::string_view path, const CImage& image, bool withAlpha, bool small, const CSink& sink) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, JumpBack, KeepQuiet);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    bool encoded = false;
    if (info != nullptr) {
        png_set_write_fn(png, const_cast<CSink*>(&sink), WritePart, nullptr);
        encoded = EncodePng(png, info, image, withAlpha, small);
    }
    png_destroy_write_struct(&png, &info);
    if (encoded) return CDone{};
    return CError{EErrorCode::WriteFailed, lng::Mark("the picture could not be packed"), std::string(path)};
}

struct CTjDeleter {
    void operator()(void* handle) const { (void)tjDestroy(handle); }  // it has no failure to tell
    void operator()(unsigned char* buffer) const { tjFree(buffer); }
};

}  // namespace

CStatus WritePng(std::string_view path, const CImage& image, bool withAlpha) {
    if (CStatus sound = CheckImage(path, image); !sound) return sound;
    CResult<CAtomicFile> file = CAtomicFile::CreateOutput(path);
    if (!file) return file.Error();
    const CSink sink = [&](std::span<const std::byte> part) {
        (void)file.Value().Write(part);
    };  // Commit tells
    if (CStatus packed = PackPng(path, image, withAlpha, false, sink); !packed) return packed;
    return file.Value().Commit();
}

CResult<std::vector<std::byte>> PngBytes(const CImage& image, bool withAlpha, bool small) {
    if (CStatus sound = CheckImage({}, image); !sound) return sound.Error();
    std::vector<std::byte> bytes;
    const CSink sink = [&](std::span<const std::byte> part) {
        bytes.insert(bytes.end(), part.begin(), part.end());
    };
    if (CStatus packed = PackPng({}, image, withAlpha, small, sink); !packed) return packed.Error();
    return bytes;
}

CResult<std::vector<std::byte>> JpegBytes(const CImage& image, int quality) {
    if (CStatus sound = CheckImage({}, image); !sound) return sound.Error();
    const std::unique_ptr<void, CTjDeleter> encoder(tjInitCompress());
    unsigned char* buffer = nullptr;
    unsigned long size = 0;
    const int outcome =
        encoder ? tjCompress2(encoder.get(), image.rgba.data(), image.width, 0, image.height, TJPF_RGBX,
                              &buffer, &size, TJSAMP_444, std::clamp(quality, 1, 100), 0)
                : -1;
    const std::unique_ptr<unsigned char, CTjDeleter> owned(buffer);
    if (outcome != 0)
        return CError{EErrorCode::WriteFailed, lng::Mark("the picture could not be packed"), {}};
    const auto* bytes = reinterpret_cast<const std::byte*>(buffer);
    return std::vector<std::byte>(bytes, bytes + size);
}

CStatus WriteJpeg(std::string_view path, const CImage& image, int quality) {
    const CResult<std::vector<std::byte>> bytes = JpegBytes(image, quality);
    if (!bytes) return CError{bytes.Error().code, bytes.Error().message, std::string(path)};
    return file_util_ex::WriteOutput(path, bytes.Value());
}

}  // namespace image_codec
