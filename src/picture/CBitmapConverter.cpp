// SPDX-License-Identifier: MIT
#include "picture/CBitmapConverter.h"

#include <new>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "picture/image_writer.h"
#include "picture/picture_formats.h"

using file_util_ex::ConvertToUTF8;
using EFormat = CBitmapConverter::EImageExFormat;

namespace {

EPictureFormat KindOf(EFormat format, std::wstring_view path) {
    switch (format) {
        case EFormat::Jpeg:
            return EPictureFormat::Jpeg;
        case EFormat::Png:
            return EPictureFormat::Png;
        case EFormat::ByExtension:
            break;
    }
    return FormatOfEnding(ConvertToUTF8(file_util_ex::GetFileExt(path)));
}

CImage Copy(const unsigned char* rgba, std::size_t byteCount, int width, int height) {
    if (rgba == nullptr) return {};
    return {width, height, {rgba, rgba + byteCount}};
}

}  // namespace

bool IsPictureName(std::wstring_view path) {
    const EPictureFormat kind = KindOf(EFormat::ByExtension, path);
    return kind == EPictureFormat::Jpeg || kind == EPictureFormat::Png;
}

bool CBitmapConverter::RGBA2File(const unsigned char* rgba, std::size_t byteCount, int width, int height,
                                 const std::wstring& path) {
    try {
        const CStatus written = Write(Copy(rgba, byteCount, width, height), path);
        if (!written) m_lastError = written.Error();
        return written.HasValue();
    } catch (const std::bad_alloc&) {
        m_lastError = {EErrorCode::TooLarge, lng::Mark("There is not enough memory for the picture"),
                       ConvertToUTF8(path)};
        return false;
    }
}

CStatus CBitmapConverter::Write(const CImage& image, const std::wstring& path) const {
    const std::string target = ConvertToUTF8(path);
    switch (KindOf(m_format, path)) {
        case EPictureFormat::Jpeg:
            return image_codec::WriteJpeg(target, image, kJpegQuality);
        case EPictureFormat::Png:
            return image_codec::WritePng(target, image, false);
        default:
            return CError{EErrorCode::BadArgument, lng::Mark("a picture is written as a .jpg or a .png file"),
                          target};
    }
}
