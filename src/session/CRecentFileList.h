// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/** The files opened last, the newest first, stored in the default ini store, section "RecentFiles", keys
 * File1 and so on. Several running copies of the program share the list: saving merges it with what the
 * others have saved. */
class CRecentFileList {
  public:
    static constexpr std::size_t kMaxFiles = 9;

    void LoadStdProfileSettings();
    /** Puts the list into the store; CLocalRegStore::Save writes the store to its file. */
    void SaveStdProfileSettings();
    /** Puts a path first; an entry that it had already moves there. */
    void AddToRecentFileList(const std::wstring& path);
    /** Removes an entry, for example of a file that no longer exists. */
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
