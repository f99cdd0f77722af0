// SPDX-License-Identifier: MIT
#include "model/CTextureLocator.h"

#include <filesystem>

#include "model/CTextureFolders.h"
#include "model/CTexturesInMemory.h"

CTextureLocator CTextureLocator::BesideModel(std::string_view modelPath) {
    CTextureLocator locator;
    const std::filesystem::path folder = std::filesystem::path(modelPath).parent_path();
    locator.m_folders =
        std::make_shared<CTextureFolders>(folder.empty() ? std::filesystem::path(".") : folder);
    return locator;
}

CTextureLocator CTextureLocator::InMemory(CImageDataTextVec textures) {
    CTextureLocator locator;
    locator.m_memory = std::make_shared<const CTexturesInMemory>(std::move(textures));
    return locator;
}

std::optional<CTextureHit> CTextureLocator::Find(std::string_view reference) const {
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
