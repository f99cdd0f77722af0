// SPDX-License-Identifier: MIT
#include "export/webgl/server_files.h"

#include <string_view>

namespace {

/** A name as a regular expression that matches it alone, without quotes, blanks and line breaks. */
std::string Pattern(std::string_view name) {
    constexpr std::string_view kHexDigits = "0123456789abcdef";
    constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-";
    std::string pattern;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (kPlain.find(c) != kPlain.npos) {
            pattern += c;
        } else if (c == '.') {
            pattern += "\\.";
        } else {
            pattern += {'\\', 'x', kHexDigits[byte >> 4], kHexDigits[byte & 15]};
        }
    }
    return pattern;
}

}  // namespace

std::string MakeHtaccess(std::span<const std::string> names) {
    std::string patterns;
    for (const std::string& name : names) patterns += (patterns.empty() ? "" : "|") + Pattern(name);
    return "<IfModule mod_deflate.c>\n<FilesMatch \"^(" + patterns +
           ")$\">\nSetOutputFilter DEFLATE\n</FilesMatch>\n</IfModule>\n";
}
