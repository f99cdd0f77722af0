// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>

/** The kinds of text that a page is made of, each such that nobody's name or script breaks out of it. */
namespace page_text {

/** Well-formed UTF-8: U+FFFD for each byte that belongs to no character, and for a NUL. */
[[nodiscard]] std::string Sound(std::string_view text);
/** A text in HTML, between tags or in quotes; sound. */
[[nodiscard]] std::string Html(std::string_view text);
/** JSON, which must be sound, so that it can stand in a script element: without <, > and &, and without the two line
 * separators that are none in JSON. It reads as the same values. */
[[nodiscard]] std::string ScriptJson(std::string_view json);
/** The relative address of a file beside the page, whatever bytes its name has. */
[[nodiscard]] std::string Link(std::string_view fileName);
[[nodiscard]] std::string Base64(std::span<const std::byte> bytes);
/** What a content security policy says to allow an element of exactly this text: 'sha256-...', quotes included. */
[[nodiscard]] std::string PolicyHash(std::string_view text);
/** A template with each {{key}} replaced by its value; what is replaced is not looked at again. */
[[nodiscard]] std::string Fill(std::string_view form, const std::map<std::string_view, std::string>& values);

}  // namespace page_text
