// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace utf8_text {

/** A character and the bytes that it takes. */
struct CCharacter {
    char32_t code = 0;
    std::size_t length = 0;
};
/** The character that the text, which is not empty, begins with; nothing where that is no well-formed
 * sequence: one cut short or too long, a surrogate, a value above U+10FFFF. */
[[nodiscard]] std::optional<CCharacter> First(std::string_view text);
/** Appends a character, which is none of those. */
void Append(std::string& out, char32_t character);
/** The characters of a text; nothing where any part of it is not well-formed. */
[[nodiscard]] std::optional<std::u32string> Decode(std::string_view text);
/** As much of the text's beginning as fits, not cut inside a character. */
[[nodiscard]] std::string_view Cut(std::string_view text, std::size_t maxBytes);

}  // namespace utf8_text

/** Wide text (UTF-32 here, UTF-16 pairs accepted) and UTF-8, one into the other. */
namespace file_util_ex {

/** Never fails: what is no character (a lone surrogate, a value above U+10FFFF) becomes U+FFFD; but what
 * PathFromBytes put in for a byte becomes that byte. */
[[nodiscard]] std::string ConvertToUTF8(std::wstring_view text);
/** Never fails: each byte that belongs to no well-formed sequence becomes U+FFFD. */
[[nodiscard]] std::wstring ConvertFromUTF8W(std::string_view text);

/** The name of a file, whose bytes may be anything: each byte that belongs to no well-formed sequence becomes
 * a lone surrogate, U+DC80 to U+DCFF, of which ConvertToUTF8 makes the same byte again. */
[[nodiscard]] std::wstring PathFromBytes(std::string_view bytes);
/** A path, or a text with one in it, as people may see it: U+FFFD for each such surrogate, which the toolkit
 * cannot show. */
[[nodiscard]] std::wstring ShownText(std::wstring text);

}  // namespace file_util_ex
