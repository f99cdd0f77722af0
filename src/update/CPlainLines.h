// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

/** Lines of text for people, out of characters that nobody has checked. Blanks follow one another nowhere, and lines have none at
 * their ends. Words and lines of absurd lengths are broken. */
class CPlainLines {
  public:
    explicit CPlainLines(std::size_t mostCharacters) : m_most(mostCharacters) {}

    /** A blank, a tab and a line end is a blank; any other character that is not plain (character_kind) is nothing. */
    void AddCharacter(wchar_t c);
    /** Begins a new line, behind so many line ends. */
    void EndLine(int lineEnds);
    /** Begins an entry of a list. */
    void AddBullet();
    [[nodiscard]] bool IsFull() const { return m_text.size() >= m_most; }
    /** Ends with "…" where it got full. */
    [[nodiscard]] std::wstring Take() &&;

  private:
    void Append(wchar_t c);

    std::size_t m_most;
    std::wstring m_text;
    int m_lineEnds = 0;                      ///< wanted before the next character
    std::size_t m_ofWord = 0, m_ofLine = 0;  ///< characters since they began
    bool m_blank = false, m_isAfterBullet = false;
};
