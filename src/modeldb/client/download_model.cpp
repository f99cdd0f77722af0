// SPDX-License-Identifier: MIT
#include "modeldb/client/download_model.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/text/lng.h"
#include "modeldb/bytes/calc_crc.h"
#include "modeldb/protocol/wire_limits.h"

using lng::Mark;

namespace {

/** What packing may add to bytes that do not become smaller. */
constexpr std::uint64_t StoredLimit(std::uint64_t size) {
    return size + size / 64 + 1024;
}

CStatus CheckBlob(const CStoredBlob& blob) {
    if (blob.size > kMostModelBytes) return CError{EErrorCode::TooLarge, Mark("the model is too large"), {}};
    const bool isSound =
        blob.codec == EBlobCodec::Plain ? blob.stored == blob.size : blob.stored <= StoredLimit(blob.size);
    if (isSound) return CDone{};
    return CError{EErrorCode::BadFormat, Mark("what is told of the model's bytes cannot be true"), {}};
}

/** Bounds what is allocated before the first byte is there. */
CStatus CheckRecord(const CModelRecord& record) {
    std::uint64_t total = 0;
    const auto add = [&](const CStoredBlob& blob) {
        total += std::min(blob.size, kMostModelBytes + 1);
        return CheckBlob(blob);
    };
    CStatus sound = add(record.file);
    for (const CStoredTexture& texture : record.textures)
        if (sound) sound = add(texture.blob);
    if (!sound) return sound;
    if (record.file.size == 0 || record.textures.size() > store_limits::kTextures)
        return CError{EErrorCode::BadFormat, Mark("what is told of the model's bytes cannot be true"), {}};
    if (total > kMostModelBytes) return CError{EErrorCode::TooLarge, Mark("the model is too large"), {}};
    return CDone{};
}

void Announce(const CModelLibrary& library, const CModelRecord& record, CProgressUnits& units) {
    std::uint64_t total = library.TransferredBytes(record.file);
    for (const CStoredTexture& texture : record.textures) total += library.TransferredBytes(texture.blob);
    units.StartBytes(total);
}

CStatus ReadFile(CModelLibrary& library, const CModelRecord& record, CProgressUnits& units, CBlobData& file) {
    file = CBlobData(new unsigned char[record.file.size], static_cast<std::uint32_t>(record.file.size));
    const auto target = std::as_writable_bytes(std::span(file.data, file.size));
    if (CStatus read = library.Read(record.file, target, units); !read) return read;
    if (CalcCrc(target) == record.key) return CDone{};
    return CError{EErrorCode::BadFormat, Mark("the model's file is another one than its key says"), {}};
}

bool IsPicture(std::span<const std::byte> bytes) {
    constexpr std::array kPng = {std::byte{0x89}, std::byte{'P'}, std::byte{'N'}, std::byte{'G'}};
    constexpr std::array kJpeg = {std::byte{0xFF}, std::byte{0xD8}, std::byte{0xFF}};
    const auto begins = [&](std::span<const std::byte> mark) {
        return bytes.size() > mark.size() && std::ranges::equal(bytes.first(mark.size()), mark);
    };
    return begins(kPng) || begins(kJpeg);
}

}  // namespace

CResult<CDownloadedModel> DownloadFrom(CModelLibrary& library, std::uint32_t key, CProgressUnits& units) {
    CResult<CModelRecord> record = library.Model(key, units);
    if (!record) return record.Error();
    CModelRecord& facts = record.Value();
    if (CStatus sound = CheckRecord(facts); !sound) return sound.Error();
    Announce(library, facts, units);
    CDownloadedModel model;
    if (CStatus read = ReadFile(library, facts, units, model.file); !read) return read.Error();
    for (CStoredTexture& texture : facts.textures) {
        std::vector<std::byte> bytes(texture.blob.size);
        if (CStatus read = library.Read(texture.blob, bytes, units); !read) return read.Error();
        model.textures.push_back({std::move(texture.name), std::move(bytes)});
    }
    model.name = std::move(facts.name);
    model.group = std::move(facts.group);
    units.Finish();
    return model;
}

CResult<std::vector<std::byte>> PreviewFrom(CModelLibrary& library, std::uint32_t key) {
    CProgressUnits units(nullptr);
    const CResult<CModelRecord> record = library.Model(key, units);
    if (!record) return record.Error();
    const std::optional<CStoredBlob>& preview = record.Value().preview;
    if (!preview) return CError{EErrorCode::NotFound, Mark("the model has no preview"), {}};
    if (preview->size > wire_limits::kPreviewBytes)
        return CError{EErrorCode::TooLarge, Mark("the preview is too large"), {}};
    if (CStatus sound = CheckBlob(*preview); !sound) return sound.Error();
    std::vector<std::byte> picture(preview->size);
    if (CStatus read = library.Read(*preview, picture, units); !read) return read.Error();
    if (IsPicture(picture)) return picture;
    return CError{EErrorCode::BadFormat, Mark("the preview is no picture"), {}};
}
