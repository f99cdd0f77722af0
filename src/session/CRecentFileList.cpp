// SPDX-License-Identifier: MIT
#include "session/CRecentFileList.h"

#include <algorithm>

#include "files/file_util_ex.h"
#include "settings/CLocalRegStore.h"

namespace {

constexpr char kSection[] = "RecentFiles";
constexpr char kStepped[] = "Stepped";

std::string Key(std::size_t index) {
    return "File" + std::to_string(index + 1);
}

}  // namespace

bool CRecentFileList::CFiles::IsChosen(const std::wstring& path) const {
    return path != stepped && std::ranges::find(paths, path) != paths.end();
}

void CRecentFileList::CFiles::Erase(const std::wstring& path) {
    std::erase(paths, path);
    if (path == stepped) stepped.clear();
}

void CRecentFileList::CFiles::PutInFront(const std::wstring& path, EReached reached) {
    const bool isStepped = reached == EReached::ByStep && !IsChosen(path);
    if (reached == EReached::ByStep && !stepped.empty()) Erase(std::wstring(stepped));
    Erase(path);
    paths.insert(paths.begin(), path);
    if (isStepped) stepped = path;
    while (paths.size() > kMaxFiles) Erase(std::wstring(paths.back()));
}

CRecentFileList::CFiles CRecentFileList::Stored() {
    CFiles files;
    for (std::size_t i = 0; i < kMaxFiles; ++i) {
        std::wstring file = CLocalRegStore::GetString(kSection, Key(i), {});
        if (!file.empty() && std::ranges::find(files.paths, file) == files.paths.end())
            files.paths.push_back(std::move(file));
    }
    std::wstring stepped = CLocalRegStore::GetString(kSection, kStepped, {});
    if (files.IsChosen(stepped)) files.stepped = std::move(stepped);
    return files;
}

void CRecentFileList::Store() const {
    for (std::size_t i = 0; i < kMaxFiles; ++i)
        CLocalRegStore::OverwriteString(kSection, Key(i), GetNameByIndex(i));
    CLocalRegStore::OverwriteString(kSection, kStepped, m_files.stepped);
}

void CRecentFileList::LoadStdProfileSettings() {
    m_files = Stored();
    m_added = {};
    m_removed.clear();
}

void CRecentFileList::SaveStdProfileSettings() {
    CLocalRegStore::TakeOverOthers();
    m_files = Stored();
    for (const std::wstring& path : m_removed) m_files.Erase(path);
    for (auto path = m_added.paths.rbegin(); path != m_added.paths.rend(); ++path)
        m_files.PutInFront(*path, *path == m_added.stepped ? EReached::ByStep : EReached::ByChoice);
    Store();
}

void CRecentFileList::AddToRecentFileList(const std::wstring& path, EReached reached) {
    if (path.empty()) return;
    if (m_files.IsChosen(path)) reached = EReached::ByChoice;
    m_files.PutInFront(path, reached);
    m_added.PutInFront(path, reached);
    std::erase(m_removed, path);
}

void CRecentFileList::RemoveIndex(std::size_t index) {
    if (index >= Files().size()) return;
    const std::wstring path = Files()[index];
    m_added.Erase(path);
    m_files.Erase(path);
    m_removed.push_back(path);
}

void CRecentFileList::Remove(const std::wstring& path) {
    const auto found = std::ranges::find(Files(), path);
    if (found != Files().end()) RemoveIndex(static_cast<std::size_t>(found - Files().begin()));
}

std::wstring CRecentFileList::GetNameByIndex(std::size_t index) const {
    return index < Files().size() ? Files()[index] : std::wstring();
}

std::wstring CRecentFileList::MenuText(std::size_t index) const {
    constexpr std::size_t kLongest = 60;
    std::wstring path = file_util_ex::ShownName(GetNameByIndex(index));
    if (path.size() > kLongest) {
        const std::size_t tail = std::min(file_util_ex::GetFileName(path).size() + 1, kLongest - 1);
        path = path.substr(0, kLongest - tail - 1) + L"…" + path.substr(path.size() - tail);
    }
    std::wstring text = L"&" + std::to_wstring(index + 1) + L" ";
    for (const wchar_t c : path) {
        text += c;
        if (c == L'&') text += c;  // a single one would underline
    }
    return text;
}
