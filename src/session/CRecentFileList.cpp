// SPDX-License-Identifier: MIT
#include "session/CRecentFileList.h"

#include <algorithm>

#include "files/file_util_ex.h"
#include "settings/CLocalRegStore.h"

namespace {

constexpr char kSection[] = "RecentFiles";

std::string Key(std::size_t index) {
    return "File" + std::to_string(index + 1);
}

std::vector<std::wstring> Stored() {
    std::vector<std::wstring> files;
    for (std::size_t i = 0; i < CRecentFileList::kMaxFiles; ++i) {
        std::wstring file = CLocalRegStore::GetString(kSection, Key(i), {});
        if (!file.empty() && std::find(files.begin(), files.end(), file) == files.end())
            files.push_back(std::move(file));
    }
    return files;
}

void PutInFront(std::vector<std::wstring>& files, const std::wstring& path) {
    std::erase(files, path);
    files.insert(files.begin(), path);
    if (files.size() > CRecentFileList::kMaxFiles) files.resize(CRecentFileList::kMaxFiles);
}

}  // namespace

void CRecentFileList::LoadStdProfileSettings() {
    m_files = Stored();
    m_added.clear();
    m_removed.clear();
}

void CRecentFileList::SaveStdProfileSettings() {
    CLocalRegStore::TakeOverOthers();
    m_files = Stored();
    for (const std::wstring& path : m_removed) std::erase(m_files, path);
    for (auto path = m_added.rbegin(); path != m_added.rend(); ++path) PutInFront(m_files, *path);
    for (std::size_t i = 0; i < kMaxFiles; ++i)
        CLocalRegStore::OverwriteString(kSection, Key(i), GetNameByIndex(i));
}

void CRecentFileList::AddToRecentFileList(const std::wstring& path) {
    if (path.empty()) return;
    PutInFront(m_files, path);
    PutInFront(m_added, path);
    std::erase(m_removed, path);
}

void CRecentFileList::RemoveIndex(std::size_t index) {
    if (index >= m_files.size()) return;
    std::erase(m_added, m_files[index]);
    m_removed.push_back(m_files[index]);
    m_files.erase(m_files.begin() + static_cast<std::ptrdiff_t>(index));
}

void CRecentFileList::Remove(const std::wstring& path) {
    const auto found = std::find(m_files.begin(), m_files.end(), path);
    if (found != m_files.end()) RemoveIndex(static_cast<std::size_t>(found - m_files.begin()));
}

std::wstring CRecentFileList::GetNameByIndex(std::size_t index) const {
    return index < m_files.size() ? m_files[index] : std::wstring();
}

std::wstring CRecentFileList::MenuText(std::size_t index) const {
    constexpr std::size_t kLongest = 60;
    std::wstring path = file_util_ex::ShownText(GetNameByIndex(index));
    if (path.size() > kLongest) {
        const std::size_t tail = std::min(file_util_ex::GetFileName(path).size() + 1, kLongest - 1);
        path = path.substr(0, kLongest - tail - 1) + L"…" + path.substr(path.size() - tail);
    }
    std::wstring text = L"&" + std::to_wstring(index + 1) + L" ";
    for (const wchar_t c : path) {
        text += c;
        if (c == L'&') text += c;            // a single one would underline
        if (c == L'\t') text.back() = L' ';  // what follows a tab would be taken for a key
    }
    return text;
}
