// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/** Texts of strangers as plain text for people: UTF-8 whose ill-formed bytes become U+FFFD, without control characters and
 * without those that change the direction of writing. */

/** One line of at most so many characters. */
[[nodiscard]] std::wstring PlainLine(std::string_view text, std::size_t mostCharacters);

/** What an HTML text says, in lines: tags, comments, scripts and styles are left out, paragraphs and entries of lists begin new
 * lines, and entities are replaced. At most 20,000 characters, the last of which is "…" where there are more. */
[[nodiscard]] std::wstring PlainNotes(std::string_view html);
