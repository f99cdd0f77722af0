// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/** The files opened last, the newest first. Kept in the default ini store, section "RecentFiles",
 * keys File1 and so on. Several copies of the program add to one list: saving merges with what others
 * saved meanwhile. */
class CRecentFileList {
  public:
    static constexpr std::size_t kMaxFiles = 9;

    void LoadStdProfileSettings();
    /** Into the store; CLocalRegStore::Save writes it. */
    void SaveStdProfileSettings();
    /** Puts a path in front, where it may have stood before. */
    void AddToRecentFileList(const std::wstring& path);
    /** Drops an entry: of a file that is gone. */
    void RemoveIndex(std::size_t index);
    void Remove(const std::wstring& path);

    /** Empty beyond the end. */
    [[nodiscard]] std::wstring GetNameByIndex(std::size_t index) const;
    [[nodiscard]] const std::vector<std::wstring>& Files() const { return m_files; }
    /** The text of an entry's menu item: its number as the key, and the path, cut in its middle
     * when it is long. */
    [[nodiscard]] std::wstring MenuText(std::size_t index) const;

  private:
    std::vector<std::wstring> m_files;
    std::vector<std::wstring> m_added;    ///< by this copy of the program, the newest first
    std::vector<std::wstring> m_removed;  ///< likewise
};
