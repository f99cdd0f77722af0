// SPDX-License-Identifier: MIT
#pragma once

#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>

#include "base/text/ascii_text.h"
#include "base/text/number_text.h"

/** Walks through the text of an OBJ or MTL file, line by line and word by word; no byte is read more often
 * than a few times, and nothing is copied. Lines end with a line feed, a carriage return or both, words with
 * a blank or a tab. Where words and numbers are read a '#' begins a comment, and a backslash before the end
 * of a line joins the next one to it. */
class CObjText {
  public:
    /** text must outlive what is read from it. A UTF-8 byte order mark is passed over. */
    explicit CObjText(std::string_view text) {
        if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
        m_at = text.data();
        m_end = text.data() + text.size();
    }

    [[nodiscard]] bool AtEnd() const { return m_at == m_end; }
    /** Where the text that is not read yet begins. */
    [[nodiscard]] const char* Place() const { return m_at; }

    /** Goes to the beginning of the next line. One that ends with both signs counts as two. */
    void NextLine() {
        while (!AtLineEnd()) ++m_at;
        if (m_at != m_end) ++m_at;
    }

    /** Goes to the next word of the line; false where none is left. */
    bool ToWord() {
        for (;; ++m_at) {
            if (AtLineEnd()) return false;
            if (IsBlank(*m_at)) continue;
            if (!AtContinuation()) return *m_at != '#';
            if (m_end - m_at > 2 && m_at[1] == '\r' && m_at[2] == '\n') ++m_at;
            if (m_end - m_at > 1) ++m_at;
        }
    }

    /** The rest of the word. */
    std::string_view Word() {
        const char* const begin = m_at;
        while (!AtWordEnd()) ++m_at;
        return {begin, static_cast<std::size_t>(m_at - begin)};
    }

    /** The rest of the line without blanks round it, comments and all, for names. */
    std::string_view Rest() {
        const char* const begin = m_at;
        while (!AtLineEnd()) ++m_at;
        return ascii_text::Trimmed({begin, static_cast<std::size_t>(m_at - begin)});
    }

    /** The number that the word begins with; NaN for any other word and infinite where it is too large.
     * Reads the whole word. */
    float Number() {
        const char* const begin = m_at;
        double value = 0;
        const auto [end, error] = std::from_chars(m_at, m_end, value);
        m_at = end;
        if (error == std::errc() && AtWordEnd() && end[-1] != '.') return static_cast<float>(value);
        m_at = begin;
        const std::string_view word = Word();
        // Some runtimes print "1.#QNAN" and "-1.#IND".
        const bool isWindowsNan = m_at != m_end && *m_at == '#' && word.ends_with('.');
        constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
        return static_cast<float>(isWindowsNan ? kNan : number_text::ParseLeading(word).value_or(kNan));
    }

    /** Reads an index up to the next slash or the word's end: counted from 1 or, where negative, backwards
     * from the newest of `count` entries. Returned counted from 0, or -1 where it is invalid. It may be that
     * of an entry that comes later. */
    std::int32_t Index(std::size_t count) {
        if (m_at != m_end && *m_at == '+') ++m_at;
        std::int32_t index = 0;  // and stays so beyond the type's range
        m_at = std::from_chars(m_at, m_end, index).ptr;
        while (!AtWordEnd() && *m_at != '/') ++m_at;
        if (index > 0) return index - 1;
        const std::int64_t fromFront = static_cast<std::int64_t>(count) + index;
        return index < 0 && fromFront >= 0 ? static_cast<std::int32_t>(fromFront) : -1;
    }

    /** Passes over a slash if there is one here. */
    bool TakeSlash() {
        if (m_at == m_end || *m_at != '/') return false;
        ++m_at;
        return true;
    }

    [[nodiscard]] static bool IsBlank(char c) { return c == ' ' || c == '\t'; }

  private:
    [[nodiscard]] static bool IsLineEnd(char c) { return c == '\n' || c == '\r'; }
    [[nodiscard]] bool AtLineEnd() const { return m_at == m_end || IsLineEnd(*m_at); }
    [[nodiscard]] bool AtContinuation() const {
        return *m_at == '\\' && (m_end - m_at == 1 || IsLineEnd(m_at[1]));
    }
    [[nodiscard]] bool AtWordEnd() const {
        return AtLineEnd() || IsBlank(*m_at) || *m_at == '#' || AtContinuation();
    }

    const char* m_at;
    const char* m_end;
};
