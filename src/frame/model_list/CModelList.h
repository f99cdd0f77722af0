// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** The model files of a folder: which one is open, and which one the keyboard is at. */
class CModelList {
  public:
    /** Replaces the entries, absolute paths in the order of the folder. The open one and the one that the keyboard is at
     * stay by their paths; when the latter is gone, its neighbour takes its place. */
    void SetEntries(std::vector<std::wstring> paths);
    [[nodiscard]] const std::vector<std::wstring>& Paths() const { return m_paths; }
    [[nodiscard]] std::size_t Size() const { return m_paths.size(); }
    [[nodiscard]] const std::wstring& Path(std::size_t index) const { return m_paths[index]; }
    /** The file's name as it is shown. */
    [[nodiscard]] std::wstring Name(std::size_t index) const;
    [[nodiscard]] std::optional<std::size_t> Find(const std::wstring& path) const;

    /** The entry that is open; nothing when it is none of them. */
    [[nodiscard]] std::optional<std::size_t> Current() const { return m_current; }
    /** The keyboard goes there, too. */
    void SetCurrent(const std::wstring& path);
    /** 0 in an empty list. */
    [[nodiscard]] std::size_t Cursor() const { return m_cursor; }
    /** By so many entries, no farther than to the ends. */
    void MoveCursor(std::ptrdiff_t by);
    void SetCursor(std::size_t index);

    /** The entry after the current one, or before it, round the ends; with no current entry the first counts as
     * current. Nothing in an empty list. */
    [[nodiscard]] std::optional<std::size_t> Neighbour(bool next) const;
    /** The first entry from `from` on, round the end, whose name begins with the text, whatever its case. */
    [[nodiscard]] std::optional<std::size_t> FindName(std::wstring_view begin, std::size_t from) const;

  private:
    std::vector<std::wstring> m_paths;
    std::wstring m_currentPath;  ///< also while it is none of the entries
    std::optional<std::size_t> m_current;
    std::size_t m_cursor = 0;
};
