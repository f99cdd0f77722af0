// SPDX-License-Identifier: MIT
#include "modeldb/server/cache/CPageCache.h"

std::uint64_t CPageCache::SizeOf(const CEntry& entry) {
    constexpr std::uint64_t kBeside = 256;  // nodes and headers, about
    return kBeside + entry.key.size() + entry.version.size() + entry.page->size();
}

CPageCache::CPage CPageCache::Find(std::string_view key, std::string_view version) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_byKey.find(key);
    if (found == m_byKey.end() || found->second->version != version) return nullptr;
    m_entries.splice(m_entries.begin(), m_entries, found->second);
    return found->second->page;
}

void CPageCache::Keep(std::string_view key, std::string_view version, CPage page) {
    CEntry entry{std::string(key), std::string(version), std::move(page)};
    const std::uint64_t size = SizeOf(entry);
    const std::lock_guard lock(m_mutex);
    if (const auto found = m_byKey.find(key); found != m_byKey.end()) Drop(found->second);
    if (size > m_mostBytes / 4) return;
    while (m_bytes + size > m_mostBytes) Drop(std::prev(m_entries.end()));
    m_entries.push_front(std::move(entry));
    m_byKey.emplace(m_entries.front().key, m_entries.begin());
    m_bytes += size;
}

void CPageCache::Drop(CEntries::iterator entry) {
    m_bytes -= SizeOf(*entry);
    m_byKey.erase(entry->key);
    m_entries.erase(entry);
}

std::uint64_t CPageCache::Bytes() const {
    const std::lock_guard lock(m_mutex);
    return m_bytes;
}
