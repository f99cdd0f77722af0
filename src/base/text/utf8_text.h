// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace utf8_text {

/** A character and the number of bytes that encode it. */
struct CCharacter {
    char32_t code = 0;
    std::size_t length = 0;
};
/** The first character of a text, which must not be empty. Nothing where the text begins with an ill-formed
 * sequence: one that is cut short or overlong, a surrogate, or a value above U+10FFFF. */
[[nodiscard]] std::optional<CCharacter> First(std::string_view text);
/** Appends a character, which must be neither a surrogate nor above U+10FFFF. */
void Append(std::string& out, char32_t character);
/** The characters of a text; nothing where any part of it is not well-formed. */
[[nodiscard]] std::optional<std::u32string> Decode(std::string_view text);
/** The longest beginning of the text that takes at most maxBytes and does not end inside a character. */
[[nodiscard]] std::string_view Cut(std::string_view text, std::size_t maxBytes);
/** The text with replacement for each character that reaches beyond itself (character_kind) and each byte of no
 * well-formed sequence: for a terminal, or one line of a list. */
[[nodiscard]] std::string Printable(std::string_view text, char replacement);

}  // namespace utf8_text

/** Conversion between wide text (UTF-32; surrogate pairs of UTF-16 are accepted) and UTF-8. */
namespace file_util_ex {

/** Never fails: a lone surrogate and a value above U+10FFFF become U+FFFD. A surrogate that PathFromBytes put
 * in for a byte becomes that byte again. */
[[nodiscard]] std::string ConvertToUTF8(std::wstring_view text);
/** Never fails: each byte that belongs to no well-formed sequence becomes U+FFFD. */
[[nodiscard]] std::wstring ConvertFromUTF8W(std::string_view text);

/** A path or file name, which may hold any bytes, as wide text. Each byte that belongs to no well-formed
 * sequence becomes a lone surrogate, U+DC80 to U+DCFF, which ConvertToUTF8 turns back into that byte. */
[[nodiscard]] std::wstring PathFromBytes(std::string_view bytes);
/** A path, or a text that holds one, in the form that people see: each such surrogate, which the toolkit
 * cannot show, becomes U+FFFD. */
[[nodiscard]] std::wstring ShownText(std::wstring text);
/** ShownText for a name that strangers chose, in one line: each character that reaches beyond itself (character_kind) becomes
 * U+FFFD, too, so that "model\u202Efdp.3ds" shows how it really ends. */
[[nodiscard]] std::wstring ShownName(std::wstring name);

}  // namespace file_util_ex
