// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/CResult.h"
#include "picture/CImage.h"

/** Writes pictures to JPEG or PNG files, which are replaced in one step (see CAtomicFile). Any thread may use one of
 * its own. */
class CBitmapConverter {
  public:
    /** The numbers are fixed. */
    enum class EImageExFormat {
        Jpeg = 0,
        Png = 1,
        ByExtension = 2,  ///< as the file's name ends, in any letter case; a name of neither kind is refused
    };
    /** Hardly to be told from the original, and colours as sharp as brightness. */
    static constexpr int kJpegQuality = 95;

    /** ByExtension at first. */
    void SetFormat(EImageExFormat format) { m_format = format; }
    /** rgba: byteCount bytes, width x height pixels of 8-bit red, green, blue and alpha, rows from top to bottom. The
     * alpha is left out. False when the file was not written; LastError() tells why, and what was there before stays. */
    [[nodiscard]] bool RGBA2File(const unsigned char* rgba, std::size_t byteCount, int width, int height,
                                 const std::wstring& path);
    /** The same for a picture in memory. */
    [[nodiscard]] CStatus Write(const CImage& image, const std::wstring& path) const;
    [[nodiscard]] const CError& LastError() const { return m_lastError; }

  private:
    EImageExFormat m_format = EImageExFormat::ByExtension;
    CError m_lastError;
};

/** True for a name that ByExtension can write: it ends in ".jpg", ".jpeg", ".jpe" or ".png", in any letter case. */
[[nodiscard]] bool IsPictureName(std::wstring_view path);
