// SPDX-License-Identifier: MIT
#include "model/textures/CTexturesInMemory.h"

#include <algorithm>
#include <tuple>

namespace {

bool IsSameFolder(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    return std::find_first_of(a.begin(), a.end(), b.begin(), b.end()) != a.end();
}

}  // namespace

CTexturesInMemory::CTexturesInMemory(CImageDataTextVec textures, std::string_view model)
    : m_textures(std::move(textures)) {
    const std::vector<std::vector<std::string>> home = CTextureQuery(model).folders;
    for (std::size_t i = 0; i < m_textures.size(); ++i) {
        if (m_textures[i].name.ends_with(".jpg.png")) m_byFullName.emplace(m_textures[i].name, i);
        CTextureQuery name(m_textures[i].name);
        const auto [ownWay, modelsWay] =
            std::mismatch(name.folders.begin(), name.folders.end(), home.begin(), home.end(), IsSameFolder);
        const auto down = static_cast<std::size_t>(name.folders.end() - ownWay);
        const auto up = static_cast<std::size_t>(home.end() - modelsWay);
        m_places.push_back({std::move(name.folders), up, down, i});
    }
    std::stable_sort(m_places.begin(), m_places.end(), [](const CPlace& a, const CPlace& b) {
        return std::tie(a.up, a.down) < std::tie(b.up, b.down);
    });
    for (const CPlace& place : m_places) {
        const CTextureQuery name(m_textures[place.texture].name);
        m_names.Add(name.base);
        m_inFolder.Add(name.BaseInFolder().base);
    }
}

const CImageDataText* CTexturesInMemory::Find(const CTextureQuery& query) const {
    if (query.base.empty()) return nullptr;
    for (const ETextureMatch match :
         {ETextureMatch::Name, ETextureMatch::OtherExtension, ETextureMatch::Truncated}) {
        std::vector<std::size_t> found = m_names.Find(query, match);
        if (!query.folders.empty()) {
            const std::vector<std::size_t> same = m_inFolder.Find(query.BaseInFolder(), match);
            found.insert(found.end(), same.begin(), same.end());
        }
        const auto best = std::min_element(found.begin(), found.end(), [&](std::size_t a, std::size_t b) {
            const std::size_t commonA = CommonFolders(a, query), commonB = CommonFolders(b, query);
            if (commonA != commonB) return commonA > commonB;
            const CPlace &placeA = m_places[a], &placeB = m_places[b];
            return std::tie(placeA.up, placeA.down) < std::tie(placeB.up, placeB.down);
        });
        if (best == found.end()) continue;
        const CImageDataText& texture = m_textures[m_places[*best].texture];
        const auto twin = m_byFullName.find(texture_name::WithAlpha(texture.name));
        return &m_textures[twin == m_byFullName.end() ? m_places[*best].texture : twin->second];
    }
    return nullptr;
}

// How many folders are alike, counted from the file name upwards.
std::size_t CTexturesInMemory::CommonFolders(std::size_t number, const CTextureQuery& query) const {
    const auto& have = m_places[number].folders;
    const auto& want = query.folders;
    std::size_t count = 0;
    while (count < have.size() && count < want.size()) {
        if (!IsSameFolder(have[have.size() - 1 - count], want[want.size() - 1 - count])) break;
        ++count;
    }
    return count;
}
