// SPDX-License-Identifier: MIT
#include "model/textures/CTextureNames.h"

#include <algorithm>

void CTextureNames::Add(std::string_view name) {
    CEntry entry{std::string(name), texture_name::FoldKey(name)};
    const texture_name::CParts parts = texture_name::Split(entry.key);
    if (texture_name::IsPictureExtension(parts.ext)) m_byStem.emplace(parts.stem, m_entries.size());
    m_byKey.emplace(entry.key, m_entries.size());
    m_entries.push_back(std::move(entry));
}

std::vector<std::size_t> CTextureNames::Find(const CTextureQuery& query, ETextureMatch match) const {
    switch (match) {
        case ETextureMatch::Name:
            return FindName(query);
        case ETextureMatch::OtherExtension:
            return FindOtherExtension(query);
        case ETextureMatch::Truncated:
            return FindTruncated(query);
    }
    return {};
}

std::vector<std::size_t> CTextureNames::FindKeys(const std::vector<std::string>& keys) const {
    std::vector<std::size_t> found;
    for (const std::string& key : keys) {
        const auto [first, last] = m_byKey.equal_range(key);
        const auto begin = static_cast<std::ptrdiff_t>(found.size());
        std::transform(first, last, std::back_inserter(found), [](const auto& item) { return item.second; });
        // Folders list their names in any order; the answer must not depend on it.
        std::sort(found.begin() + begin, found.end(),
                  [this](std::size_t a, std::size_t b) { return m_entries[a].name < m_entries[b].name; });
    }
    return found;
}

std::vector<std::size_t> CTextureNames::FindName(const CTextureQuery& query) const {
    std::vector<std::size_t> found = FindKeys(query.baseKeys);
    std::stable_partition(found.begin(), found.end(),
                          [&](std::size_t number) { return m_entries[number].name == query.base; });
    return found;
}

std::vector<std::size_t> CTextureNames::FindOtherExtension(const CTextureQuery& query) const {
    std::vector<std::size_t> found;
    const auto addStem = [&](std::string_view stem) {
        const auto [first, last] = m_byStem.equal_range(std::string(stem));
        std::transform(first, last, std::back_inserter(found), [](const auto& item) { return item.second; });
        return !found.empty();
    };
    for (const std::string& key : query.baseKeys) {
        const texture_name::CParts parts = texture_name::Split(key);
        // "wall.v2" may be a name without ending: then "wall.v2.jpg" comes before "wall.jpg".
        if (!texture_name::IsPictureExtension(parts.ext) && addStem(key)) break;
        if (addStem(parts.stem)) break;
    }
    std::sort(found.begin(), found.end(), [this](std::size_t a, std::size_t b) {
        const auto rank = [this](std::size_t number) {
            return texture_name::PictureRank(texture_name::Split(m_entries[number].key).ext);
        };
        return rank(a) != rank(b) ? rank(a) < rank(b) : m_entries[a].name < m_entries[b].name;
    });
    return found;
}

std::vector<std::size_t> CTextureNames::FindTruncated(const CTextureQuery& query) const {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < m_entries.size() && found.size() < 2; ++i) {
        if (texture_name::IsTruncationOf(query.baseKeys.front(), m_entries[i].key)) found.push_back(i);
    }
    if (found.size() > 1) found.clear();
    return found;
}
