// SPDX-License-Identifier: MIT
#include "base/text/utf8_text.h"

#include <algorithm>
#include <array>

#include "base/text/character_kind.h"

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}

// U+DC80 to U+DCFF, each a byte of a path.
bool IsEscapedByte(char32_t c) {
    return c >= 0xDC80 && c <= 0xDCFF;
}

bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u;
}

}  // namespace

namespace utf8_text {

std::optional<CCharacter> First(std::string_view text) {
    const char32_t lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) return CCharacter{lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return {};
    char32_t c = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (!IsContinuation(text[i])) return {};
        c = (c << 6) | (static_cast<unsigned char>(text[i]) & 0x3Fu);
    }
    constexpr std::array<char32_t, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};
    if (c < kLeast[length] || c > 0x10FFFF || IsSurrogate(c)) return {};
    return CCharacter{c, length};
}

void Append(std::string& out, char32_t character) {
    const auto push = [&out](char32_t byte) {
        out.push_back(static_cast<char>(static_cast<unsigned char>(byte)));
    };
    if (character < 0x80) return push(character);
    const int following = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    constexpr std::array<char32_t, 4> kLead = {0, 0xC0, 0xE0, 0xF0};
    push(kLead[static_cast<std::size_t>(following)] | (character >> (6 * following)));
    for (int i = following; i-- > 0;) push(0x80 | ((character >> (6 * i)) & 0x3F));
}

std::optional<std::u32string> Decode(std::string_view text) {
    std::u32string characters;
    while (!text.empty()) {
        const std::optional<CCharacter> first = First(text);
        if (!first) return {};
        characters.push_back(first->code);
        text.remove_prefix(first->length);
    }
    return characters;
}

std::string_view Cut(std::string_view text, std::size_t maxBytes) {
    if (text.size() <= maxBytes) return text;
    constexpr std::size_t kLongest = 4;
    for (std::size_t back = 0; back < kLongest && back <= maxBytes; ++back) {
        if (!IsContinuation(text[maxBytes - back])) return text.substr(0, maxBytes - back);
    }
    return text.substr(0, maxBytes);  // no UTF-8
}

std::string Printable(std::string_view text, char replacement) {
    std::string result;
    while (!text.empty()) {
        const auto first = First(text);
        const std::size_t length = first ? first->length : 1;
        if (first && !character_kind::ReachesBeyondItself(first->code))
            result += text.substr(0, length);
        else
            result += replacement;
        text.remove_prefix(length);
    }
    return result;
}

}  // namespace utf8_text

namespace file_util_ex {

std::string ConvertToUTF8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto c = static_cast<char32_t>(text[i]);
        // Texts that came from 16-bit programs hold surrogate pairs.
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size()) {
            const auto low = static_cast<char32_t>(text[i + 1]);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                ++i;
            }
        }
        if (IsEscapedByte(c)) {
            out.push_back(static_cast<char>(static_cast<unsigned char>(c & 0xFF)));
        } else {
            utf8_text::Append(out, c > 0x10FFFF || IsSurrogate(c) ? kReplacement : c);
        }
    }
    return out;
}

std::wstring ConvertFromUTF8W(std::string_view text) {
    return ShownText(PathFromBytes(text));
}

std::wstring PathFromBytes(std::string_view bytes) {
    static_assert(sizeof(wchar_t) == 4);
    std::wstring out;
    out.reserve(bytes.size());
    while (!bytes.empty()) {
        const char32_t escaped = 0xDC00U + static_cast<unsigned char>(bytes.front());
        const utf8_text::CCharacter first =
            utf8_text::First(bytes).value_or(utf8_text::CCharacter{escaped, 1});
        out.push_back(static_cast<wchar_t>(first.code));
        bytes.remove_prefix(first.length);
    }
    return out;
}

std::wstring ShownText(std::wstring text) {
    const auto replaced = static_cast<wchar_t>(kReplacement);
    std::ranges::replace_if(
        text, [](wchar_t c) { return IsEscapedByte(static_cast<char32_t>(c)); }, replaced);
    return text;
}

std::wstring ShownName(std::wstring name) {
    std::ranges::replace_if(name, character_kind::ReachesBeyondItself<wchar_t>,
                            static_cast<wchar_t>(kReplacement));
    return ShownText(std::move(name));
}

}  // namespace file_util_ex
