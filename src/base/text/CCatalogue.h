// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/CResult.h"
#include "base/text/CPluralRule.h"

/** The texts of a language: a gettext catalogue (.mo) in UTF-8. Several threads may read it. The toolkit has a reader, too, but
 * programs of the command line start without the toolkit, which only its main thread may ask, and which trusts the file. */
class CCatalogue {
  public:
    static constexpr std::uintmax_t kMaxBytes = 8U << 20;

    /** Without a text. */
    CCatalogue() = default;
    /** Takes the bytes of a file. BadFormat for any other file, or one with a part outside of it. */
    [[nodiscard]] static CResult<CCatalogue> Read(std::vector<std::byte> bytes);

    CCatalogue(CCatalogue&&) = default;
    CCatalogue& operator=(CCatalogue&&) = default;

    /** The translation, where there is one that is not empty; it lives as long as the catalogue. key: the English text, or Key of it. */
    [[nodiscard]] std::optional<std::string_view> Find(std::string_view key) const;
    /** The form of the translation that goes with the count. */
    [[nodiscard]] std::optional<std::string_view> Find(std::string_view key, std::uint64_t count) const;
    /** The key of a text that is told from its equals by a context. */
    [[nodiscard]] static std::string Key(std::string_view context, std::string_view text);

  private:
    [[nodiscard]] bool ReadTables();
    [[nodiscard]] bool ReadHeader();
    [[nodiscard]] std::optional<std::uint32_t> Number(std::size_t offset) const;
    /** The text that an entry of a table tells of. */
    [[nodiscard]] std::optional<std::string_view> Entry(std::size_t offset) const;

    std::vector<std::byte> m_bytes;
    bool m_isSwapped = false;
    std::unordered_map<std::string_view, std::string_view> m_texts;  // of m_bytes, which no move moves
    CPluralRule m_rule;
};
