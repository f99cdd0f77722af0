// SPDX-License-Identifier: MIT
#include "model/textures/CTextureLocator.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "model/textures/CTextureFolders.h"
#include "model/textures/CTexturesInMemory.h"
#include "model/textures/texture_name.h"

CTextureLocator CTextureLocator::BesideModel(std::string_view modelPath) {
    CTextureLocator locator;
    const std::filesystem::path folder = std::filesystem::path(modelPath).parent_path();
    locator.m_folders =
        std::make_shared<CTextureFolders>(folder.empty() ? std::filesystem::path(".") : folder);
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
    return CTextureHit{found->native(), nullptr};
}

void CTextureLocator::Add(std::shared_ptr<const CImageDataText> texture) {
    m_added.push_back(std::move(texture));
}

const CImageDataText* CTextureLocator::FindAdded(std::string_view reference) const {
    const auto find = [this](const auto& matches) {
        const auto found = std::find_if(m_added.rbegin(), m_added.rend(),
                                        [&](const auto& texture) { return matches(texture->name); });
        return found == m_added.rend() ? nullptr : found->get();
    };
    if (const auto* same = find([&](const std::string& name) { return name == reference; })) return same;
    return find([&](const std::string& name) { return texture_name::SameButForEnding(name, reference); });
}
