// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/name_hash.h"
#include "model/textures/texture_name.h"

/** How strictly a name must match. */
enum class ETextureMatch {
    Name,            ///< the same name in any letter case and code page
    OtherExtension,  ///< the same name with the ending of another picture format
    Truncated,       ///< a longer name that DOS cut down, if its place has only one such
};

/** The names of the pictures in some places (folders), by key. Names are numbered as they are added: nearest place
 * first, and in each in an order that the caller decides. A look-up takes the same short time however many names there
 * are and however alike they are, since of names with one key only the first kMostAlike count, and the one that has the
 * very bytes that are asked for. */
class CTextureNames {
  public:
    static constexpr std::size_t kMostAlike = 64;

    /** name is a bare file name; place is not smaller than in the call before. */
    void Add(std::string_view name, std::size_t place = 0);
    [[nodiscard]] const std::string& Name(std::size_t number) const { return m_entries[number].name; }
    [[nodiscard]] std::size_t PlaceOf(std::size_t number) const { return m_entries[number].place; }
    [[nodiscard]] std::size_t Size() const { return m_entries.size(); }

    /** Those that match, the best first: the nearest place, in it the same bytes, then likelier code pages, then usual
     * picture formats. */
    [[nodiscard]] std::vector<std::size_t> Find(const CTextureQuery& query, ETextureMatch match) const;
    /** Names with any of these keys, in the order of the keys, then of the names. */
    [[nodiscard]] std::vector<std::size_t> FindKeys(const std::vector<std::string>& keys) const;

  private:
    struct CEntry {
        std::string name, key;
        std::size_t place = 0;
    };
    /** The first names that DOS would have cut down to the same, one for each place. */
    struct CCutDown {
        std::size_t number = 0;
        bool isOnlyOne = true;
    };
    template <class T>
    using CTable = CNameMap<std::vector<T>>;

    [[nodiscard]] std::vector<std::size_t> FindName(const CTextureQuery& query) const;
    [[nodiscard]] std::vector<std::size_t> FindOtherExtension(const CTextureQuery& query) const;
    [[nodiscard]] std::vector<std::size_t> FindTruncated(const CTextureQuery& query) const;
    void AddCutDown(const std::string& key, std::size_t number);

    std::vector<CEntry> m_entries;
    CTable<std::uint32_t> m_byName, m_byKey;
    CTable<std::uint32_t> m_byStem;  ///< only names of pictures
    CTable<CCutDown> m_byCutDown;
};
