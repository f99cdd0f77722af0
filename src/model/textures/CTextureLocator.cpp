// SPDX-License-Identifier: MIT
#include "model/textures/CTextureLocator.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "model/textures/CTextureFolders.h"
#include "model/textures/CTexturesInMemory.h"
#include "model/textures/texture_name.h"

CResult<std::vector<std::byte>> ReadTexture(const CTextureHit& hit, std::uint64_t maxBytes) {
    if (!hit.data) return file_util_ex::ReadPlainFile(hit.foundAt, maxBytes);
    if (hit.data->size() <= maxBytes) return *hit.data;
    return CError{EErrorCode::TooLarge, lng::Mark("the file is too large"), hit.foundAt};
}

CTextureLocator CTextureLocator::BesideModel(std::string_view modelPath) {
    CTextureLocator locator;
    locator.m_folders = std::make_shared<CTextureFolders>(std::filesystem::path(modelPath).parent_path());
    return locator;
}

CTextureLocator CTextureLocator::InMemory(CImageDataTextVec textures, std::string_view model) {
    CTextureLocator locator;
    locator.m_memory = std::make_shared<const CTexturesInMemory>(std::move(textures), model);
    return locator;
}

std::optional<CTextureHit> CTextureLocator::Find(std::string_view reference) const {
    if (const CImageDataText* added = FindAdded(reference)) return CTextureHit{added->name, &added->data};
    if (!m_memory && !m_folders) return std::nullopt;
    const CTextureQuery query(reference);
    if (m_memory) {
        const CImageDataText* found = m_memory->Find(query);
        if (!found) return std::nullopt;
        return CTextureHit{found->name, &found->data};
    }
    const auto found = m_folders->Find(query);
    if (!found) return std::nullopt;
    return CTextureHit{found->native(), nullptr, !m_folders->IsInModelFolder(*found)};
}

void CTextureLocator::Add(std::shared_ptr<const CImageDataText> texture) {
    std::string key = texture_name::FoldKey(texture->name);
    m_added.push_back({std::move(texture), std::move(key)});
}

const CImageDataText* CTextureLocator::FindAdded(std::string_view reference) const {
    if (m_added.empty()) return nullptr;
    const auto find = [this](const auto& matches) {
        const auto found = std::find_if(m_added.rbegin(), m_added.rend(), matches);
        return found == m_added.rend() ? nullptr : found->texture.get();
    };
    if (const auto* same = find([&](const CAdded& added) { return added.texture->name == reference; }))
        return same;
    const std::string key = texture_name::FoldKey(reference);
    return find([&](const CAdded& added) { return texture_name::SameKeyButForEnding(added.key, key); });
}
