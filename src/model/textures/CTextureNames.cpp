// SPDX-License-Identifier: MIT
#include "model/textures/CTextureNames.h"

#include <algorithm>
#include <tuple>

namespace {

template <class Table>
void AddAlike(Table& table, std::string_view key, std::size_t number) {
    auto& alike = table.try_emplace(std::string(key)).first->second;
    if (alike.size() < CTextureNames::kMostAlike) alike.push_back(static_cast<std::uint32_t>(number));
}

template <class Table>
const typename Table::mapped_type& AlikeIn(const Table& table, std::string_view key) {
    static const typename Table::mapped_type none;
    const auto found = table.find(key);
    return found == table.end() ? none : found->second;
}

/** Numbers with what they are sorted by, whatever that is, before the number itself. */
template <class Rank>
std::vector<std::size_t> Sorted(std::vector<std::pair<Rank, std::size_t>> ranked) {
    std::sort(ranked.begin(), ranked.end());
    std::vector<std::size_t> numbers;
    for (const auto& [rank, number] : ranked) {
        if (std::find(numbers.begin(), numbers.end(), number) == numbers.end()) numbers.push_back(number);
    }
    return numbers;
}

}  // namespace

void CTextureNames::Add(std::string_view name, std::size_t place) {
    const std::size_t number = m_entries.size();
    const CEntry& entry =
        m_entries.emplace_back(CEntry{std::string(name), texture_name::FoldKey(name), place});
    AddAlike(m_byName, entry.name, number);
    AddAlike(m_byKey, entry.key, number);
    const texture_name::CParts parts = texture_name::Split(entry.key);
    if (!texture_name::IsPictureExtension(parts.ext)) return;
    AddAlike(m_byStem, parts.stem, number);
    for (const std::string& cut : texture_name::CutDownKeys(entry.key)) AddCutDown(cut, number);
}

void CTextureNames::AddCutDown(const std::string& key, std::size_t number) {
    std::vector<CCutDown>& alike = m_byCutDown[key];
    if (!alike.empty() && PlaceOf(alike.back().number) == PlaceOf(number)) {
        alike.back().isOnlyOne = false;
    } else if (alike.size() < kMostAlike) {
        alike.push_back({number, true});
    }
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
        const auto& alike = AlikeIn(m_byKey, key);
        found.insert(found.end(), alike.begin(), alike.end());
    }
    return found;
}

std::vector<std::size_t> CTextureNames::FindName(const CTextureQuery& query) const {
    using CRank = std::tuple<std::size_t, std::size_t>;  // place; 0 for the same bytes, else which key
    std::vector<std::pair<CRank, std::size_t>> found;
    for (const std::size_t number : AlikeIn(m_byName, query.base))
        found.push_back({{PlaceOf(number), 0}, number});
    for (std::size_t k = 0; k < query.baseKeys.size(); ++k) {
        for (const std::size_t number : AlikeIn(m_byKey, query.baseKeys[k]))
            found.push_back({{PlaceOf(number), k + 1}, number});
    }
    return Sorted(std::move(found));
}

std::vector<std::size_t> CTextureNames::FindOtherExtension(const CTextureQuery& query) const {
    using CRank = std::tuple<std::size_t, std::size_t, std::size_t>;  // place, which stem, which format
    std::vector<std::pair<CRank, std::size_t>> found;
    std::size_t which = 0;
    const auto addStem = [&](std::string_view stem) {
        for (const std::size_t number : AlikeIn(m_byStem, stem)) {
            const std::size_t format =
                texture_name::PictureRank(texture_name::Split(m_entries[number].key).ext);
            found.push_back({{PlaceOf(number), which, format}, number});
        }
        ++which;
    };
    for (const std::string& key : query.baseKeys) {
        const texture_name::CParts parts = texture_name::Split(key);
        // "wall.v2" may be a name without ending: then "wall.v2.jpg" comes before "wall.jpg".
        if (!texture_name::IsPictureExtension(parts.ext)) addStem(key);
        addStem(parts.stem);
    }
    return Sorted(std::move(found));
}

std::vector<std::size_t> CTextureNames::FindTruncated(const CTextureQuery& query) const {
    std::vector<std::size_t> found;
    const std::optional<std::string> cut = texture_name::KeyOfCutDown(query.baseKeys.front());
    if (!cut) return found;
    for (const CCutDown& alike : AlikeIn(m_byCutDown, *cut)) {
        if (alike.isOnlyOne) found.push_back(alike.number);
    }
    return found;
}
