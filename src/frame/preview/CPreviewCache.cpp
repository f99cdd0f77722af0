// SPDX-License-Identifier: MIT
#include "frame/preview/CPreviewCache.h"

#include <algorithm>

const CPreviewResult* CPreviewCache::Find(const CPreviewRequest& request) {
    const auto found = std::ranges::find(m_entries, request, [](const auto& entry) { return entry.first; });
    if (found == m_entries.end()) return nullptr;
    m_entries.splice(m_entries.begin(), m_entries, found);
    return &m_entries.front().second;
}

void CPreviewCache::Add(const CPreviewRequest& request, CPreviewResult result) {
    // Previews of older states of the file are useless.
    m_entries.remove_if([&](const auto& entry) {
        return entry.first.path == request.path && entry.first.sidePx == request.sidePx &&
               entry.first.background == request.background;
    });
    m_entries.emplace_front(request, std::move(result));
    if (m_entries.size() > kCapacity) m_entries.pop_back();
}
