// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"

/** One ini file in memory: sections of keys with text values, all UTF-8.
 *
 * The syntax: "[section]" lines, "key=value" lines, comment lines that begin with ';' or '#' and are kept.
 * Names are compared without regard to the case of ASCII letters; the last of several equal keys counts.
 * Blanks around names and values do not belong to them. A value runs to the end of its line, semicolons and
 * all, and stands for itself, backslashes too, with two exceptions:
 * - "text" in double quotes is the text between them, taken as it is (so that blanks at its ends survive);
 * - $"text" is the text with \n, \r, \t and \\ for line feed, return, tab and backslash (so that lines
 *   survive). Set() writes the plainest of the three forms that reads back as the same value. */
class CIniFile {
  public:
    CIniFile();
    CIniFile(const CIniFile&) = delete;
    CIniFile& operator=(const CIniFile&) = delete;
    ~CIniFile();

    /** Replaces the content. Refused, and then empty: over 16 MB, over 200,000 lines, and text with NULs. */
    [[nodiscard]] CStatus Parse(std::string_view text);
    /** Replaces the content with the file's; empty after a failure. path is UTF-8. */
    [[nodiscard]] CStatus Load(std::string_view path);
    /** The content as Parse reads it, in the order in which it was read or first set. */
    [[nodiscard]] std::string Text() const;
    /** Replaces the file in one step. Its folder is made (0700) when missing. */
    [[nodiscard]] CStatus Save(std::string_view path) const;

    [[nodiscard]] std::optional<std::string> Get(std::string_view section, std::string_view key) const;
    /** Adds or replaces. False, and nothing changed, for what could not be read back: empty names; names with
     * blanks at an end, line breaks or control characters, ']' in a section, '=' in a key, a key that begins
     * like a comment or section; a NUL anywhere. */
    [[nodiscard]] bool Set(std::string_view section, std::string_view key, std::string_view value);
    /** In the order of the file. */
    [[nodiscard]] std::vector<std::string> Sections() const;

  private:
    struct CContent;
    std::unique_ptr<CContent> m_content;
};
