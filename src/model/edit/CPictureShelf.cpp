// SPDX-License-Identifier: MIT
#include "model/edit/CPictureShelf.h"

#include <sys/stat.h>

#include <algorithm>

#include "files/file_util_ex.h"
#include "model/edit/material_edits.h"

namespace {

constexpr std::uint64_t kMaxTextureBytes = 512ULL << 20;

}  // namespace

CResult<CPictureShelf::CPicture> CPictureShelf::Read(std::string_view path) {
    CFile file{std::string(path), 0, 0, nullptr};
    struct stat info {};
    if (::stat(file.path.c_str(), &info) == 0) {
        file.changedAt = info.st_mtim.tv_sec * 1'000'000'000LL + info.st_mtim.tv_nsec;
        file.size = static_cast<unsigned long long>(info.st_size);
    }
    const auto known =
        std::find_if(m_files.begin(), m_files.end(), [&](const CFile& f) { return f.path == file.path; });
    if (known != m_files.end() && known->changedAt == file.changedAt && known->size == file.size)
        return known->picture;
    auto bytes = file_util_ex::ReadWholeFile(file.path, kMaxTextureBytes);
    if (!bytes) return bytes.Error();
    const std::string name = material_edits::TextureName(file_util_ex::GetFileName(file.path), 1);
    file.picture = std::make_shared<const CImageDataText>(CImageDataText{name, std::move(bytes).Value()});
    if (known != m_files.end()) {
        m_held.push_back(known->picture);
        *known = std::move(file);
        return known->picture;
    }
    m_files.push_back(std::move(file));
    return m_files.back().picture;
}

CPictureShelf::CPicture CPictureShelf::Add(CImageDataText picture) {
    return m_held.emplace_back(std::make_shared<const CImageDataText>(std::move(picture)));
}

CPictureShelf::CPicture CPictureShelf::Rename(const CPicture& picture, std::string_view name) {
    if (picture->name == name) return picture;
    CPicture renamed = Add({std::string(name), picture->data});
    for (CFile& file : m_files) {
        if (file.picture != picture) continue;
        m_held.push_back(std::exchange(file.picture, renamed));
    }
    return renamed;
}

void CPictureShelf::Keep(const std::optional<CTextureHit>& hit, CPreparedTexture texture) {
    if (!hit || texture.image.IsEmpty()) return;
    m_decoded.insert_or_assign(CPlace{hit->data, hit->foundAt}, std::move(texture));
}

CPreparedTexture CPictureShelf::Take(const std::optional<CTextureHit>& hit) {
    if (!hit) return {};
    auto found = m_decoded.extract(CPlace{hit->data, hit->foundAt});
    return found ? std::move(found.mapped()) : CPreparedTexture{};
}
