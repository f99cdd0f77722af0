// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/** How a file was reached: somebody chose it, or it was the next one of a step or a show. */
enum class EReached { ByChoice, ByStep };

/** The files opened last, the newest first, stored in the default ini store, section "RecentFiles", keys
 * File1 and so on.
 *
 * Whoever steps through a folder of a hundred models must still find the files that he chose before. So the files
 * that are reached by steps share one entry: each takes the place of the one before, at the top of the list, and at most one
 * chosen file drops out at the end. A chosen file that a step reaches moves to the top and stays a chosen one; choosing the
 * file of the shared entry makes it one. The key "Stepped" names the file of the shared entry.
 *
 * Several running copies of the program share the list: saving merges it with what the others have saved. The shared entry
 * is one for all; that of the copy which saves last is kept. */
class CRecentFileList {
  public:
    static constexpr std::size_t kMaxFiles = 9;

    void LoadStdProfileSettings();
    /** Puts the list into the store; CLocalRegStore::Save writes the store to its file. */
    void SaveStdProfileSettings();
    /** Puts a path first; an entry that it had already moves there. */
    void AddToRecentFileList(const std::wstring& path, EReached reached = EReached::ByChoice);
    /** Removes an entry, for example of a file that no longer exists. */
    void RemoveIndex(std::size_t index);
    void Remove(const std::wstring& path);

    /** Empty beyond the end. */
    [[nodiscard]] std::wstring GetNameByIndex(std::size_t index) const;
    [[nodiscard]] const std::vector<std::wstring>& Files() const { return m_files.paths; }
    /** The text of an entry's menu item: its number as the key, and the path, cut in its middle
     * when it is long. */
    [[nodiscard]] std::wstring MenuText(std::size_t index) const;

  private:
    struct CFiles {
        std::vector<std::wstring> paths;  ///< the newest first
        std::wstring stepped;             ///< the one of them that was reached by a step; empty: none

        [[nodiscard]] bool IsChosen(const std::wstring& path) const;
        void Erase(const std::wstring& path);
        void PutInFront(const std::wstring& path, EReached reached);
    };
    [[nodiscard]] static CFiles Stored();
    void Store() const;

    CFiles m_files;
    CFiles m_added;                       ///< by this copy of the program
    std::vector<std::wstring> m_removed;  ///< likewise
};
