// SPDX-License-Identifier: MIT
#include "export/webgl/page_text.h"

#include <openssl/evp.h>
#include <openssl/sha.h>

#include <algorithm>
#include <array>
#include <cassert>

#include "base/text/utf8_text.h"

namespace page_text {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

std::string_view HtmlEntity(char c) {
    switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&#39;";
        default:
            return {};
    }
}

}  // namespace

std::string Sound(std::string_view text) {
    constexpr char32_t kReplacement = 0xFFFD;
    std::string sound;
    sound.reserve(text.size());
    while (!text.empty()) {
        const auto character = utf8_text::First(text);
        const bool isGood = character && character->code != 0;
        utf8_text::Append(sound, isGood ? character->code : kReplacement);
        text.remove_prefix(character ? character->length : 1);
    }
    return sound;
}

std::string Html(std::string_view text) {
    std::string html;
    for (const char c : Sound(text)) {
        const std::string_view entity = HtmlEntity(c);
        if (entity.empty()) {
            html += c;
        } else {
            html += entity;
        }
    }
    return html;
}

std::string ScriptJson(std::string_view json) {
    constexpr std::string_view kLineEnds = "\xE2\x80";  // U+2028 and U+2029 begin so
    std::string text;
    text.reserve(json.size());
    for (std::size_t i = 0; i < json.size(); ++i) {
        const char c = json[i];
        if (c == '<' || c == '>' || c == '&') {
            text += "\\u00";
            text += {kHexDigits[static_cast<unsigned char>(c) >> 4], kHexDigits[c & 15]};
        } else if (json.substr(i, 2) == kLineEnds && i + 2 < json.size() &&
                   (json[i + 2] == '\xA8' || json[i + 2] == '\xA9')) {
            text += json[i + 2] == '\xA8' ? "\\u2028" : "\\u2029";
            i += 2;
        } else {
            text += c;
        }
    }
    return text;
}

std::string Link(std::string_view fileName) {
    constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    std::string link = "./";
    for (const char c : fileName) {
        const auto byte = static_cast<unsigned char>(c);
        if (kPlain.find(c) != kPlain.npos) {
            link += c;
        } else {
            link += {'%', kHexDigits[byte >> 4], kHexDigits[byte & 15]};
        }
    }
    return link;
}

std::string Base64(std::span<const std::byte> bytes) {
    constexpr std::size_t kAtOnce = std::size_t{3} << 28;    // EVP_EncodeBlock counts in int
    std::string text((bytes.size() + 2) / 3 * 4 + 1, '\0');  // it ends what it writes with a NUL
    std::size_t written = 0;
    while (!bytes.empty()) {
        const auto part = bytes.first(std::min(bytes.size(), kAtOnce));
        bytes = bytes.subspan(part.size());
        written += static_cast<std::size_t>(EVP_EncodeBlock(
            reinterpret_cast<unsigned char*>(text.data() + written),
            reinterpret_cast<const unsigned char*>(part.data()), static_cast<int>(part.size())));
    }
    text.resize(written);
    return text;
}

std::string PolicyHash(std::string_view text) {
    std::array<unsigned char, SHA256_DIGEST_LENGTH> hash{};
    (void)SHA256(reinterpret_cast<const unsigned char*>(text.data()), text.size(),
                 hash.data());  // cannot fail
    return "'sha256-" + Base64(std::as_bytes(std::span(hash))) + "'";
}

std::string Fill(std::string_view form, const std::map<std::string_view, std::string>& values) {
    std::string text;
    std::size_t bytes = form.size();
    for (const auto& [key, value] : values) bytes += value.size();
    text.reserve(bytes);
    while (true) {
        const std::size_t begin = form.find("{{");
        text += form.substr(0, begin);
        if (begin == form.npos) return text;
        const std::size_t end = form.find("}}", begin);
        assert(end != form.npos);
        const auto value = values.find(form.substr(begin + 2, end - begin - 2));
        assert(value != values.end());
        text += value->second;
        form.remove_prefix(end + 2);
    }
}

}  // namespace page_text
