// SPDX-License-Identifier: MIT
#include <csetjmp>
#include <cstdio>
// jpeglib.h wants it first.
#include <jpeglib.h>
// and this one that.
#include <jerror.h>

#include "base/byte_order.h"
#include "picture/decode/CPictureRows.h"
#include "picture/decode/decoders.h"

namespace picture_decoders {
namespace {

/** libjpeg at work on the bytes of a file. */
class CJpegReader {
  public:
    explicit CJpegReader(CBytes bytes) : m_bytes(bytes) {
        m_jpeg.err = jpeg_std_error(&m_errors);
        m_errors.error_exit = OnError;
        m_errors.output_message = [](j_common_ptr) {};
        m_jpeg.client_data = this;
    }
    CJpegReader(const CJpegReader&) = delete;
    CJpegReader& operator=(const CJpegReader&) = delete;
    ~CJpegReader() { jpeg_destroy_decompress(&m_jpeg); }

    [[nodiscard]] CError Error() const;
    [[nodiscard]] CPictureClaim Claim() const {
        return {EPictureFormat::Jpeg, m_jpeg.image_width, m_jpeg.image_height};
    }
    [[nodiscard]] bool HasSeveralScans() { return jpeg_has_multiple_scans(&m_jpeg) != FALSE; }
    [[nodiscard]] bool IsRead() const {
        const int components = m_jpeg.num_components;
        // No texture is packed by arithmetic codes, which take six times as long.
        return (components == 1 || components == 3 || components == 4) && m_jpeg.arith_code == FALSE;
    }

    // An error inside the library jumps back to the start of these functions: nothing in them may own anything.
    bool ReadHeader();
    bool Start(int reduction);
    bool ReadRows(CPictureRows& rows);

    /** Of the picture as it is given out. */
    [[nodiscard]] std::size_t OutWidth() const { return m_jpeg.output_width; }
    [[nodiscard]] std::size_t OutHeight() const { return m_jpeg.output_height; }

  private:
    static void OnError(j_common_ptr jpeg);

    CBytes m_bytes;
    jpeg_decompress_struct m_jpeg{};
    jpeg_error_mgr m_errors{};
    std::jmp_buf m_back{};
    std::array<char, JMSG_LENGTH_MAX> m_message{};
};

void CJpegReader::OnError(j_common_ptr jpeg) {
    auto* self = static_cast<CJpegReader*>(jpeg->client_data);
    jpeg->err->format_message(jpeg, self->m_message.data());
    std::longjmp(self->m_back, 1);
}

CError CJpegReader::Error() const {
    if (m_errors.msg_code == JERR_NO_BACKING_STORE || m_errors.msg_code == JERR_OUT_OF_MEMORY)
        return IsTooLarge();
    return {EErrorCode::BadFormat, m_message.data(), {}};
}

bool CJpegReader::ReadHeader() {
    if (setjmp(m_back) != 0) return false;
    jpeg_create_decompress(&m_jpeg);
    // Pictures of several scans keep their coefficients until the last; what does not fit is an error.
    m_jpeg.mem->max_memory_to_use = 200 << 20;
    jpeg_mem_src(&m_jpeg, reinterpret_cast<const unsigned char*>(m_bytes.data()),
                 static_cast<unsigned long>(m_bytes.size()));
    return jpeg_read_header(&m_jpeg, TRUE) == JPEG_HEADER_OK;
}

bool CJpegReader::Start(int reduction) {
    if (setjmp(m_back) != 0) return false;
    m_jpeg.out_color_space = m_jpeg.num_components == 4 ? JCS_CMYK : JCS_EXT_RGBA;
    m_jpeg.scale_num = 1;
    m_jpeg.scale_denom = static_cast<unsigned>(reduction);
    return jpeg_start_decompress(&m_jpeg) != 0 && m_jpeg.output_components == 4;
}

// Printers' colours, stored inverted as everybody but the JPEG standard does.
void CmykToRgba(std::span<std::uint8_t> row) {
    for (std::size_t i = 0; i + 3 < row.size(); i += 4) {
        const unsigned black = row[i + 3];
        for (std::size_t k = 0; k < 3; ++k) row[i + k] = static_cast<std::uint8_t>(row[i + k] * black / 255);
        row[i + 3] = 255;
    }
}

bool CJpegReader::ReadRows(CPictureRows& rows) {
    if (setjmp(m_back) != 0) return false;
    for (std::size_t y = 0; y < rows.Height(); ++y) {
        const std::span<std::uint8_t> row = rows.Begin(y);
        JSAMPROW to = row.data();
        if (jpeg_read_scanlines(&m_jpeg, &to, 1) != 1) return false;
        if (m_jpeg.num_components == 4) CmykToRgba(row);
        rows.End(y);
    }
    return true;
}

/** How often a scan may begin. Counted in the whole file: thumbnails within count, too. */
std::uint64_t CountScans(CBytes bytes) {
    std::uint64_t count = 0;
    for (std::size_t i = 0; i + 1 < bytes.size(); ++i)
        count += bytes[i] == std::byte{0xFF} && bytes[i + 1] == std::byte{0xDA} ? 1U : 0U;
    return count;
}

/** Each scan goes over the whole picture; real files have 14 at most. The bytes of several take five times as long as
 * those of one. */
bool TakesTooLong(CBytes bytes, const CPictureClaim& claim, bool hasSeveralScans) {
    constexpr std::uint64_t kMostScans = 100, kMostScansTimesPixels = 1000ULL << 20;
    constexpr std::size_t kMostBytes = 64 << 20, kMostBytesOfSeveralScans = 16 << 20;
    const std::uint64_t scans = CountScans(bytes);
    return scans > kMostScans || scans * claim.width * claim.height > kMostScansTimesPixels ||
           bytes.size() > (hasSeveralScans ? kMostBytesOfSeveralScans : kMostBytes);
}

}  // namespace

CDecoded DecodeJpeg(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits) {
    CJpegReader reader(bytes);
    if (!reader.ReadHeader()) return reader.Error();
    if (!reader.IsRead()) return KindIsNotRead();
    if (TakesTooLong(bytes, claim, reader.HasSeveralScans())) return IsTooLarge();
    if (reader.Claim().width != claim.width || reader.Claim().height != claim.height)
        return HeaderIsDamaged();
    // Pixels that are not given out cost an eighth of the time or less.
    const CResult<int> reduction = ReductionFor(claim, limits, limits.pixels * 8);
    if (!reduction) return reduction.Error();
    const auto turn = reader.HasSeveralScans() ? WaitForTurn(claim) : std::unique_lock<std::mutex>();
    if (!reader.Start(reduction.Value())) return reader.Error();
    const std::uint64_t width = ReducedSide(claim.width, reduction.Value());
    const std::uint64_t height = ReducedSide(claim.height, reduction.Value());
    if (reader.OutWidth() != width || reader.OutHeight() != height) return DataIsDamaged();
    CPictureRows rows(width, height, 1);
    if (!reader.ReadRows(rows)) return reader.Error();
    return image_codec::CDecodedImage{std::move(rows).Take().image, reduction.Value()};
}

}  // namespace picture_decoders
