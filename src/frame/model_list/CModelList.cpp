// SPDX-License-Identifier: MIT
#include "frame/model_list/CModelList.h"

#include <algorithm>
#include <utility>

#include "base/text/natural_order.h"
#include "files/file_util_ex.h"

void CModelList::SetEntries(std::vector<std::wstring> paths) {
    const std::wstring atCursor = m_paths.empty() ? m_currentPath : m_paths[m_cursor];
    m_paths = std::move(paths);
    m_current = Find(m_currentPath);
    m_cursor = Find(atCursor).value_or(std::min(m_cursor, m_paths.empty() ? 0 : m_paths.size() - 1));
}

std::wstring CModelList::Name(std::size_t index) const {
    return file_util_ex::ShownName(file_util_ex::GetFileName(m_paths[index]));
}

std::optional<std::size_t> CModelList::Find(const std::wstring& path) const {
    const auto found = std::ranges::find(m_paths, path);
    if (found == m_paths.end()) return std::nullopt;
    return static_cast<std::size_t>(found - m_paths.begin());
}

void CModelList::SetCurrent(const std::wstring& path) {
    m_currentPath = path;
    m_current = Find(path);
    if (m_current) m_cursor = *m_current;
}

void CModelList::MoveCursor(std::ptrdiff_t by) {
    if (m_paths.empty()) return;
    const auto last = static_cast<std::ptrdiff_t>(m_paths.size()) - 1;
    const auto at = static_cast<std::ptrdiff_t>(m_cursor);
    m_cursor = static_cast<std::size_t>(std::clamp(by, -at, last - at) + at);
}

void CModelList::SetCursor(std::size_t index) {
    if (index < m_paths.size()) m_cursor = index;
}

std::optional<std::size_t> CModelList::Neighbour(bool next) const {
    if (m_paths.empty()) return std::nullopt;
    const std::size_t at = m_current.value_or(0), count = m_paths.size();
    return next ? (at + 1) % count : (at + count - 1) % count;
}

std::optional<std::size_t> CModelList::FindName(std::wstring_view begin, std::size_t from) const {
    const std::wstring folded = natural_order::Folded(begin);
    for (std::size_t i = 0; i < m_paths.size(); ++i) {
        const std::size_t at = (from + i) % m_paths.size();
        if (natural_order::Folded(Name(at)).starts_with(folded)) return at;
    }
    return std::nullopt;
}
