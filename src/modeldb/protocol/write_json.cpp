// SPDX-License-Identifier: MIT
#include "modeldb/protocol/write_json.h"

#include <charconv>

namespace write_json {

namespace {

void AppendEscaped(std::string& out, char c) {
    constexpr char kDigits[] = "0123456789abcdef";
    switch (c) {
        case '"':
            out += "\\\"";
            return;
        case '\\':
            out += "\\\\";
            return;
        case '\n':
            out += "\\n";
            return;
        case '\r':
            out += "\\r";
            return;
        case '\t':
            out += "\\t";
            return;
        default:
            break;
    }
    const auto byte = static_cast<unsigned char>(c);
    out += "\\u00";
    out += kDigits[byte >> 4];
    out += kDigits[byte & 15];
}

constexpr bool NeedsEscape(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

}  // namespace

void AppendText(std::string& out, std::string_view text) {
    out += '"';
    std::size_t done = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!NeedsEscape(text[i])) continue;
        out += text.substr(done, i - done);
        AppendEscaped(out, text[i]);
        done = i + 1;
    }
    out += text.substr(done);
    out += '"';
}

void AppendNumber(std::string& out, std::uint64_t number) {
    char digits[20];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    out.append(digits, end);
}

void AppendName(std::string& out, std::string_view name) {
    if (!out.ends_with('{')) out += ',';
    out += '"';
    out += name;
    out += "\":";
}

}  // namespace write_json
