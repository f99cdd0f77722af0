// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "model/textures/texture_name.h"

/** How strictly a name must match. */
enum class ETextureMatch {
    Name,            ///< the same name in any letter case and code page
    OtherExtension,  ///< the same name with the ending of another picture format
    Truncated,       ///< a longer name that DOS cut down, if there is only one such
};

/** The names of one folder (or of a list of pictures in memory), by key. Names are numbered
 * as they are added. */
class CTextureNames {
  public:
    /** name is a bare file name. */
    void Add(std::string_view name);
    [[nodiscard]] const std::string& Name(std::size_t number) const { return m_entries[number].name; }
    [[nodiscard]] std::size_t Size() const { return m_entries.size(); }

    /** All that match, the best first: same bytes, then likelier code pages, then usual picture formats. */
    [[nodiscard]] std::vector<std::size_t> Find(const CTextureQuery& query, ETextureMatch match) const;
    /** All names with any of these keys, in the order of the keys, then of the names. */
    [[nodiscard]] std::vector<std::size_t> FindKeys(const std::vector<std::string>& keys) const;

  private:
    struct CEntry {
        std::string name, key;
    };
    [[nodiscard]] std::vector<std::size_t> FindName(const CTextureQuery& query) const;
    [[nodiscard]] std::vector<std::size_t> FindOtherExtension(const CTextureQuery& query) const;
    [[nodiscard]] std::vector<std::size_t> FindTruncated(const CTextureQuery& query) const;

    std::vector<CEntry> m_entries;
    std::unordered_multimap<std::string, std::size_t> m_byKey;
    std::unordered_multimap<std::string, std::size_t> m_byStem;  ///< only names of pictures
};
