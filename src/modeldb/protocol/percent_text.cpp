// SPDX-License-Identifier: MIT
#include "modeldb/protocol/percent_text.h"

#include "base/text/utf8_text.h"
#include "modeldb/bytes/hex_text.h"

namespace percent_text {

namespace {

constexpr bool StandsForItself(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '.' || c == '_' || c == '~';
}

}  // namespace

void Append(std::string& out, std::string_view text) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    for (const char c : text) {
        if (StandsForItself(c)) {
            out += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        out += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
}

std::string Write(std::string_view text) {
    std::string out;
    Append(out, text);
    return out;
}

std::optional<std::string> Read(std::string_view text, std::size_t mostBytes) {
    if (text.size() / 3 > mostBytes) return std::nullopt;
    std::string out;
    while (!text.empty()) {
        std::byte byte{static_cast<unsigned char>(text.front() == '+' ? ' ' : text.front())};
        std::size_t length = 1;
        if (text.front() == '%') {
            length = 3;
            if (text.size() < length || !hex_text::Read(text.substr(1, 2), {&byte, 1})) return std::nullopt;
        }
        if (byte == std::byte{0} || out.size() == mostBytes) return std::nullopt;
        out += static_cast<char>(byte);
        text.remove_prefix(length);
    }
    if (!utf8_text::Decode(out)) return std::nullopt;
    return out;
}

}  // namespace percent_text
