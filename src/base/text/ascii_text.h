// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/** Letter case and blanks of ASCII, whatever the locale is; other characters stay as they are. Narrow text
 * may be UTF-8. */
namespace ascii_text {

template <class Char>
[[nodiscard]] constexpr Char Lower(Char c) {
    return c >= Char{'A'} && c <= Char{'Z'} ? static_cast<Char>(c + ('a' - 'A')) : c;
}
template <class Char>
[[nodiscard]] constexpr Char Upper(Char c) {
    return c >= Char{'a'} && c <= Char{'z'} ? static_cast<Char>(c - ('a' - 'A')) : c;
}

template <class Char>
[[nodiscard]] std::basic_string<Char> Lowered(std::basic_string<Char> text) {
    std::ranges::transform(text, text.begin(), Lower<Char>);
    return text;
}
template <class Char>
[[nodiscard]] std::basic_string<Char> Uppered(std::basic_string<Char> text) {
    std::ranges::transform(text, text.begin(), Upper<Char>);
    return text;
}
[[nodiscard]] inline std::string Lowered(std::string_view text) {
    return Lowered(std::string(text));
}

[[nodiscard]] inline bool EqualNoCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, Lower<char>, Lower<char>);
}
[[nodiscard]] inline bool EqualNoCase(std::wstring_view a, std::wstring_view b) {
    return std::ranges::equal(a, b, {}, Lower<wchar_t>, Lower<wchar_t>);
}

constexpr std::string_view kBlanks = " \t\r\n";

/** Without the unwanted characters at its ends. */
[[nodiscard]] constexpr std::string_view Trimmed(std::string_view text, std::string_view unwanted = kBlanks) {
    const std::size_t first = text.find_first_not_of(unwanted);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(unwanted) + 1 - first);
}
[[nodiscard]] constexpr std::wstring_view Trimmed(std::wstring_view text,
                                                  std::wstring_view unwanted = L" \t\r\n") {
    const std::size_t first = text.find_first_not_of(unwanted);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(unwanted) + 1 - first);
}

}  // namespace ascii_text
