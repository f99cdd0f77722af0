// SPDX-License-Identifier: MIT
#include "modeldb/server/spooled_upload.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "base/text/utf8_text.h"
#include "files/system_error.h"
#include "modeldb/bytes/calc_crc.h"
#include "modeldb/protocol/CUploadBodyReader.h"
#include "picture/image_probe.h"
#include "picture/picture_limits.h"

namespace spooled_upload {

namespace {

constexpr std::size_t kPiece = 256 << 10;

/** Gives a stretch of a file. */
class CStretchSource final : public CByteSource {
  public:
    CStretchSource(int file, const CFileStretch& stretch) : m_file(file), m_stretch(stretch) {}
    CResult<std::size_t> Give(std::span<std::byte> room) override {
        const std::size_t wanted = std::min<std::uint64_t>(room.size(), m_stretch.bytes);
        if (wanted == 0) return std::size_t{0};
        ssize_t got = 0;
        do {
            got = ::pread(m_file, room.data(), wanted, static_cast<off_t>(m_stretch.offset));
        } while (got < 0 && errno == EINTR);
        if (got <= 0) return CError{EErrorCode::Unreadable, SystemErrorText(got < 0 ? errno : EIO), "upload"};
        m_stretch.offset += static_cast<std::uint64_t>(got);
        m_stretch.bytes -= static_cast<std::uint64_t>(got);
        return static_cast<std::size_t>(got);
    }

  private:
    int m_file;
    CFileStretch m_stretch;
};

/** Notes where the parts of a body are, and the file's check sum. */
class CStretchNoter final : public CUploadTaker {
  public:
    explicit CStretchNoter(std::uint64_t bodyBytes) : m_bodyBytes(bodyBytes) {}
    CStatus OnHead(const CUploadHead& head) override {
        upload.head = head;
        std::uint64_t offset = head.file.size;
        for (const CUploadTexture& texture : head.textures) offset += texture.part.size;
        offset = m_bodyBytes - offset;  // the parts fill the body to its end
        upload.input.model = {offset, head.file.size};
        offset += head.file.size;
        for (const CUploadTexture& texture : head.textures) {
            upload.input.textures.push_back({texture.name, {offset, texture.part.size}});
            offset += texture.part.size;
        }
        return CDone{};
    }
    CResult<CByteSink*> OnPart(std::size_t number) override {
        m_sum.isFile = number == 0;
        return &m_sum;
    }
    CStatus OnPartEnd(std::size_t) override {
        upload.key = m_sum.sum;
        return CDone{};
    }

    CSpooledUpload upload;

  private:
    struct CSum final : CByteSink {
        CStatus Take(std::span<const std::byte> piece) override {
            if (isFile) sum = CalcCrc(piece, sum);
            return CDone{};
        }
        bool isFile = false;
        std::uint32_t sum = 0;
    };
    const std::uint64_t m_bodyBytes;
    CSum m_sum;
};

/** A stretch of a file in memory, as far as it is looked at. */
class CMappedStretch {
  public:
    CMappedStretch(int file, const CFileStretch& stretch) {
        const auto page = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
        const std::uint64_t before = stretch.offset % page;
        m_size = stretch.bytes + before;
        m_start = ::mmap(nullptr, m_size, PROT_READ, MAP_PRIVATE, file,
                         static_cast<off_t>(stretch.offset - before));
        if (m_start != MAP_FAILED)
            bytes = std::span(static_cast<const std::byte*>(m_start), m_size).subspan(before);
    }
    CMappedStretch(const CMappedStretch&) = delete;
    CMappedStretch& operator=(const CMappedStretch&) = delete;
    ~CMappedStretch() {
        if (m_start != MAP_FAILED) (void)::munmap(m_start, m_size);  // nothing was written to it
    }

    std::span<const std::byte> bytes;  ///< empty where the system gives no memory

  private:
    void* m_start = MAP_FAILED;
    std::size_t m_size = 0;
};

bool IsSoundPicture(std::span<const std::byte> bytes, std::string_view name) {
    if (bytes.size() > image_codec::kMaxFileBytes) return false;
    const auto claim = image_probe::ClaimOf(bytes, name);
    if (!claim) return false;
    constexpr auto kSide = static_cast<std::uint64_t>(image_codec::kMaxSide);
    const std::uint64_t width = claim.Value().width, height = claim.Value().height;
    return width <= kSide && height <= kSide && width * height <= image_codec::kMaxPixels;
}

CError NoPicture(const std::string& name) {
    return {EErrorCode::Unsupported,
            "the texture \"" + utf8_text::Printable(name, '?') + "\" is no picture that can be used",
            {}};
}

void Discard(CModelStore& store, const CNewModel& model) {
    store.Discard(model.file);
    for (const CNewTexture& texture : model.textures) store.Discard(texture.blob);
}

}  // namespace

CResult<CSpooledUpload> Read(CHttpBody body, std::size_t mostTextures) {
    const auto shared =
        std::make_shared<const CHttpBody>(std::move(body));  // owned by the input's file below
    CStretchNoter noter(shared->Bytes());
    CUploadBodyReader reader({shared->Bytes(), mostTextures}, noter);
    CStretchSource source(shared->File().Get(), {0, shared->Bytes()});
    std::vector<std::byte> piece(kPiece);
    while (true) {
        const CResult<std::size_t> got = source.Give(piece);
        if (!got) return got.Error();
        if (got.Value() == 0) break;
        if (CStatus taken = reader.Take(std::span(piece).first(got.Value())); !taken) return taken.Error();
    }
    if (CStatus complete = reader.Finish(); !complete) return complete.Error();
    CSpooledUpload upload = std::move(noter.upload);
    upload.input.file = std::shared_ptr<const CFileDescriptor>(shared, &shared->File());
    upload.input.name = upload.head.name;
    return upload;
}

CStatus CheckPictures(const CSpooledUpload& upload) {
    for (const CTextureInput& texture : upload.input.textures) {
        if (texture.stretch.bytes == 0) return NoPicture(texture.name);
        const CMappedStretch picture(upload.input.file->Get(), texture.stretch);
        if (picture.bytes.empty()) return CError{EErrorCode::Busy, "not enough memory", {}};
        if (!IsSoundPicture(picture.bytes, texture.name)) return NoPicture(texture.name);
    }
    return CDone{};
}

CResult<CNewModel> Pack(CModelStore& store, const CSpooledUpload& upload) {
    CNewModel model;
    model.group = upload.head.group;
    model.name = upload.head.name;
    model.code = upload.head.code;
    model.note = upload.head.note;
    CStretchSource file(upload.input.file->Get(), upload.input.model);
    CResult<CNewBlob> packed = CBlobWriter::Write(&store, file);
    if (!packed) return packed.Error();
    model.file = std::move(packed).Value();
    for (const CTextureInput& texture : upload.input.textures) {
        CStretchSource source(upload.input.file->Get(), texture.stretch);
        packed = CBlobWriter::Write(&store, source);
        if (!packed) {
            Discard(store, model);
            return packed.Error();
        }
        model.textures.push_back({texture.name, std::move(packed).Value()});
    }
    return model;
}

}  // namespace spooled_upload
