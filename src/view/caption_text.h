// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/** A stranger's text as a caption can show it: without control characters and those that turn the direction of what
 * follows, blanks in a row as one, few marks on one letter, at most some hundred characters. Lines stay lines. */
[[nodiscard]] std::wstring CaptionText(std::wstring_view text);

/** Breaks a text at its line ends and, where fits says that a line is too wide, at blanks, or inside of a word that is
 * too wide alone. What is beyond maxLines is left out, and the last line ends with three dots. fits must hold for shorter
 * beginnings of a line that fits; a single character that does not fit makes a line all the same. */
[[nodiscard]] std::vector<std::wstring> CaptionLines(std::wstring_view text, std::size_t maxLines,
                                                     const std::function<bool(const std::wstring&)>& fits);
