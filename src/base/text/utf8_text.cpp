// SPDX-License-Identifier: MIT
#include "base/text/utf8_text.h"

#include <array>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}

void AppendUtf8(std::string& out, char32_t c) {
    const auto push = [&out](char32_t byte) {
        out.push_back(static_cast<char>(static_cast<unsigned char>(byte)));
    };
    if (c < 0x80) {
        push(c);
    } else if (c < 0x800) {
        push(0xC0 | (c >> 6));
        push(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        push(0xE0 | (c >> 12));
        push(0x80 | ((c >> 6) & 0x3F));
        push(0x80 | (c & 0x3F));
    } else {
        push(0xF0 | (c >> 18));
        push(0x80 | ((c >> 12) & 0x3F));
        push(0x80 | ((c >> 6) & 0x3F));
        push(0x80 | (c & 0x3F));
    }
}

// The character at the head of text and the bytes it takes; a malformed head is U+FFFD and one byte.
struct CDecoded {
    char32_t character = kReplacement;
    std::size_t length = 1;
};

CDecoded DecodeHead(std::string_view text) {
    const auto byteAt = [text](std::size_t i) {
        return static_cast<char32_t>(static_cast<unsigned char>(text[i]));
    };
    const char32_t lead = byteAt(0);
    if (lead < 0x80) return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return {};
    char32_t c = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0) != 0x80) return {};
        c = (c << 6) | (byteAt(i) & 0x3F);
    }
    constexpr std::array<char32_t, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};
    if (c < kLeast[length] || c > 0x10FFFF || IsSurrogate(c)) return {};
    return {c, length};
}

}  // namespace

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
        AppendUtf8(out, c > 0x10FFFF || IsSurrogate(c) ? kReplacement : c);
    }
    return out;
}

std::wstring ConvertFromUTF8W(std::string_view text) {
    static_assert(sizeof(wchar_t) == 4);
    std::wstring out;
    out.reserve(text.size());
    while (!text.empty()) {
        const CDecoded head = DecodeHead(text);
        out.push_back(static_cast<wchar_t>(head.character));
        text.remove_prefix(head.length);
    }
    return out;
}

}  // namespace file_util_ex
