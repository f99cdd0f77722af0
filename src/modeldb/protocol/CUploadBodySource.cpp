// SPDX-License-Identifier: MIT
#include "modeldb/protocol/CUploadBodySource.h"

#include <algorithm>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "modeldb/protocol/upload_form.h"
#include "modeldb/protocol/wire_limits.h"

namespace {

bool IsText(std::string_view text, std::size_t mostBytes) {
    return text.size() <= mostBytes && text.find('\0') == text.npos && utf8_text::Decode(text);
}
bool IsName(std::string_view text, std::size_t mostBytes) {
    return !text.empty() && IsText(text, mostBytes);
}

bool HasGoodTexts(const CUploadHead& head) {
    return IsName(head.name, store_limits::kModelName) && IsName(head.group, store_limits::kGroupName) &&
           IsText(head.code, store_limits::kCode) && IsText(head.note, store_limits::kNote) &&
           std::ranges::all_of(head.textures, [](const CUploadTexture& texture) {
               return IsName(texture.name, store_limits::kTextureName);
           });
}

CUploadPart PartOf(std::span<const std::byte> bytes) {
    return {bytes.size(), CBlobHash::Of(bytes)};
}

/** All before the file. */
std::vector<std::byte> BeginningOf(const std::string& json) {
    std::vector<std::byte> bytes;
    bytes.reserve(upload_form::kPrefixBytes + json.size());
    for (const char c : upload_form::kMark) bytes.push_back(static_cast<std::byte>(c));
    bytes.push_back(std::byte{upload_form::kVersion});
    for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<std::byte>(json.size() >> shift & 0xff));
    const auto head = std::as_bytes(std::span(json));
    bytes.insert(bytes.end(), head.begin(), head.end());
    return bytes;
}

}  // namespace

CResult<CUploadBodySource> CUploadBodySource::Make(CUploadHead head, std::span<const std::byte> file,
                                                   std::span<const CPicture> textures) {
    const CError tooLarge{EErrorCode::TooLarge, lng::Mark("the model is larger than the server takes"), {}};
    if (textures.size() > store_limits::kTextures) return tooLarge;
    CUploadBodySource source;
    head.file = PartOf(file);
    head.textures.clear();
    source.m_rest.push_back(file);
    source.m_size = file.size();
    for (const CPicture& texture : textures) {
        head.textures.push_back({texture.name, PartOf(texture.bytes)});
        source.m_rest.push_back(texture.bytes);
        source.m_size += texture.bytes.size();
    }
    if (!HasGoodTexts(head))
        return CError{EErrorCode::BadArgument, lng::Mark("the name is no valid text"), {}};
    const std::string json = wire_records::WriteUploadHead(head);
    if (json.size() > wire_limits::kHeadBytes) return tooLarge;
    source.m_head = BeginningOf(json);
    source.m_size += source.m_head.size();
    return source;
}

CResult<std::size_t> CUploadBodySource::Give(std::span<std::byte> room) {
    std::uint64_t skipped = m_sent;
    std::size_t given = 0;
    const auto give = [&](std::span<const std::byte> bytes) {
        const auto begin = static_cast<std::size_t>(std::min<std::uint64_t>(skipped, bytes.size()));
        skipped -= begin;
        const auto piece = bytes.subspan(begin, std::min(bytes.size() - begin, room.size() - given));
        std::ranges::copy(piece, room.begin() + static_cast<std::ptrdiff_t>(given));
        given += piece.size();
    };
    give(m_head);
    for (const std::span<const std::byte> bytes : m_rest) {
        if (given == room.size()) break;
        give(bytes);
    }
    m_sent += given;
    return given;
}
