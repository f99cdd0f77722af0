// SPDX-License-Identifier: MIT
#include "model/CTexturesInMemory.h"

#include <algorithm>

CTexturesInMemory::CTexturesInMemory(CImageDataTextVec textures) : m_textures(std::move(textures)) {
    for (const CImageDataText& texture : m_textures) {
        CTextureQuery name(texture.name);
        m_names.Add(name.base);
        m_folders.push_back(std::move(name.folders));
    }
}

const CImageDataText* CTexturesInMemory::Find(const CTextureQuery& query) const {
    if (query.base.empty()) return nullptr;
    for (const ETextureMatch match :
         {ETextureMatch::Name, ETextureMatch::OtherExtension, ETextureMatch::Truncated}) {
        const std::vector<std::size_t> found = m_names.Find(query, match);
        const auto best = std::min_element(found.begin(), found.end(), [&](std::size_t a, std::size_t b) {
            const std::size_t commonA = CommonFolders(a, query), commonB = CommonFolders(b, query);
            return commonA != commonB ? commonA > commonB : m_folders[a].size() < m_folders[b].size();
        });
        if (best != found.end()) return &m_textures[*best];
    }
    return nullptr;
}

// How many folders are alike, counted from the file name upwards.
std::size_t CTexturesInMemory::CommonFolders(std::size_t number, const CTextureQuery& query) const {
    const auto& have = m_folders[number];
    const auto& want = query.folders;
    std::size_t count = 0;
    while (count < have.size() && count < want.size()) {
        const auto& a = have[have.size() - 1 - count];
        const auto& b = want[want.size() - 1 - count];
        if (std::find_first_of(a.begin(), a.end(), b.begin(), b.end()) == a.end()) break;
        ++count;
    }
    return count;
}
