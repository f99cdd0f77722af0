// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

/** Texts that were made once, each good for one version of what it tells. When they take too much memory, those go that
 * nobody has asked for longest. Any thread. */
class CPageCache {
  public:
    using CPage = std::shared_ptr<const std::string>;  ///< shared with the answers that are sending it

    explicit CPageCache(std::uint64_t mostBytes) : m_mostBytes(mostBytes) {}

    /** Null where there is none, or one of another version. */
    [[nodiscard]] CPage Find(std::string_view key, std::string_view version);
    /** Replaces the page of another version. One that would take more than a quarter of the room is not kept. */
    void Keep(std::string_view key, std::string_view version, CPage page);
    [[nodiscard]] std::uint64_t Bytes() const;

  private:
    struct CEntry {
        std::string key, version;
        CPage page;
    };
    using CEntries = std::list<CEntry>;
    [[nodiscard]] static std::uint64_t SizeOf(const CEntry& entry);
    void Drop(CEntries::iterator entry);

    const std::uint64_t m_mostBytes;
    mutable std::mutex m_mutex;
    CEntries m_entries;                                                ///< the one asked for last comes first
    std::unordered_map<std::string_view, CEntries::iterator> m_byKey;  // of texts in m_entries
    std::uint64_t m_bytes = 0;
};
