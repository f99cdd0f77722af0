// SPDX-License-Identifier: MIT
#include <png.h>

#include <cstdio>
#include <cstring>

#include "picture/decode/CPictureRows.h"
#include "picture/decode/decoders.h"

namespace picture_decoders {
namespace {

/** libpng at work on the bytes of a file. */
class CPngReader {
  public:
    explicit CPngReader(CBytes bytes) : m_left(bytes) {
        m_png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, OnError, OnWarning);
        m_info = m_png != nullptr ? png_create_info_struct(m_png) : nullptr;
    }
    CPngReader(const CPngReader&) = delete;
    CPngReader& operator=(const CPngReader&) = delete;
    ~CPngReader() { png_destroy_read_struct(&m_png, &m_info, nullptr); }

    [[nodiscard]] CError Error() const { return {EErrorCode::BadFormat, m_message.data(), {}}; }
    [[nodiscard]] bool Is(const CPictureClaim& claim) const {
        return png_get_image_width(m_png, m_info) == claim.width &&
               png_get_image_height(m_png, m_info) == claim.height;
    }
    [[nodiscard]] bool IsInterlaced() const {
        return png_get_interlace_type(m_png, m_info) != PNG_INTERLACE_NONE;
    }
    /** As they are packed. */
    [[nodiscard]] std::uint64_t RowBytes() const { return m_packedRowBytes; }

    // An error inside the library jumps back to the start of these functions: nothing in them may own anything.
    bool ReadHeader();
    bool ReadRows(CPictureRows& rows);
    /** Row after row of four bytes a pixel into all, as often as the interlacing asks for. */
    bool ReadWhole(std::span<std::uint8_t> all);

  private:
    static void OnError(png_structp png, png_const_charp message);
    static void OnWarning(png_structp, png_const_charp) {}
    static void Feed(png_structp png, png_bytep to, png_size_t count);

    CBytes m_left;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
    std::uint64_t m_packedRowBytes = 0;
    int m_passes = 1;
    std::array<char, 100> m_message{"not enough memory for the picture"};
};

void CPngReader::OnError(png_structp png, png_const_charp message) {
    auto* self = static_cast<CPngReader*>(png_get_error_ptr(png));
    (void)std::snprintf(self->m_message.data(), self->m_message.size(), "%s", message);  // cut, if need be
    png_longjmp(png, 1);
}

void CPngReader::Feed(png_structp png, png_bytep to, png_size_t count) {
    auto* self = static_cast<CPngReader*>(png_get_io_ptr(png));
    if (count > self->m_left.size()) png_error(png, "the picture's data ends early");
    std::memcpy(to, self->m_left.data(), count);
    self->m_left = self->m_left.subspan(count);
}

bool CPngReader::ReadHeader() {
    if (m_info == nullptr || setjmp(png_jmpbuf(m_png)) != 0) return false;
    png_set_read_fn(m_png, this, Feed);
    png_set_user_limits(m_png, image_codec::kMaxSide, image_codec::kMaxSide);
    png_set_chunk_cache_max(m_png, 64);
    png_set_chunk_malloc_max(m_png, 4 << 20);
    // Texts and profiles are not looked at: packed ones may unpack to gigabytes.
    png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_read_info(m_png, m_info);
    m_packedRowBytes = png_get_rowbytes(m_png, m_info);
    png_set_expand(m_png);
    png_set_scale_16(m_png);
    png_set_gray_to_rgb(m_png);
    png_set_filler(m_png, 255, PNG_FILLER_AFTER);
    m_passes = png_set_interlace_handling(m_png);
    png_read_update_info(m_png, m_info);
    if (png_get_rowbytes(m_png, m_info) == std::size_t{png_get_image_width(m_png, m_info)} * 4) return true;
    png_error(m_png, "the picture's header is damaged");
}

bool CPngReader::ReadRows(CPictureRows& rows) {
    if (setjmp(png_jmpbuf(m_png)) != 0) return false;
    for (std::size_t y = 0; y < rows.Height(); ++y) {
        png_read_row(m_png, rows.Begin(y).data(), nullptr);
        rows.End(y);
    }
    return true;
}

bool CPngReader::ReadWhole(std::span<std::uint8_t> all) {
    if (setjmp(png_jmpbuf(m_png)) != 0) return false;
    const std::size_t rowBytes = png_get_rowbytes(m_png, m_info);
    for (int pass = 0; pass < m_passes; ++pass) {
        for (std::size_t at = 0; at < all.size(); at += rowBytes) png_read_row(m_png, &all[at], nullptr);
    }
    return true;
}

}  // namespace

CDecoded DecodePng(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits) {
    CPngReader reader(bytes);
    if (!reader.ReadHeader()) return reader.Error();
    if (!reader.Is(claim)) return HeaderIsDamaged();
    // Unpacking takes as long as there are bytes.
    if (reader.RowBytes() * claim.height > limits.pixels * 4) return IsTooLarge();
    if (reader.IsInterlaced()) {
        return DecodeWhole(claim, limits, [&](std::span<std::uint8_t> rgba) {
            return reader.ReadWhole(rgba) ? CStatus(CDone{}) : reader.Error();
        });
    }
    CResult<CPictureRows> rows = CPictureRows::Make(claim, limits);
    if (!rows) return rows.Error();
    if (!reader.ReadRows(rows.Value())) return reader.Error();
    return std::move(rows).Value().Take();
}

}  // namespace picture_decoders
