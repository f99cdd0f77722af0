// SPDX-License-Identifier: MIT
#include "base/text/file_uri.h"

#include <algorithm>
#include <optional>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"

namespace file_uri {
namespace {

constexpr std::string_view kScheme = "file:";
constexpr std::string_view kThisMachine = "localhost";

bool IsLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool StandsForItself(char c) {
    constexpr std::string_view kMarks = "-._~!$&'()*+,=:@/";
    return IsLetterOrDigit(c) || kMarks.find(c) != kMarks.npos;
}

std::optional<unsigned> DigitOf(char c) {
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
    return std::nullopt;
}

CError Wrong(const char* message, std::string_view address) {
    return {EErrorCode::BadArgument, message, std::string(address)};
}

/** Nothing where an escape is broken, or hides what no name can hold. */
std::optional<std::string> Unescaped(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            bytes += text[i];
            continue;
        }
        const auto high = i + 2 < text.size() ? DigitOf(text[i + 1]) : std::nullopt;
        const auto low = i + 2 < text.size() ? DigitOf(text[i + 2]) : std::nullopt;
        const unsigned value = high && low ? *high * 16 + *low : 0;
        if (value == 0 || value == '/') return std::nullopt;
        bytes += static_cast<char>(value);
        i += 2;
    }
    return bytes;
}

bool HasScheme(std::string_view text) {
    const std::size_t end = text.find("://");
    if (end == text.npos || end == 0 || !IsLetterOrDigit(text.front())) return false;
    return std::ranges::all_of(text.substr(0, end),
                               [](char c) { return IsLetterOrDigit(c) || c == '+' || c == '-' || c == '.'; });
}

bool HasFileScheme(std::string_view text) {
    return ascii_text::EqualNoCase(text.substr(0, kScheme.size()), kScheme);
}

}  // namespace

std::string Of(std::string_view path) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string address = "file://";
    for (const char c : path) {
        if (StandsForItself(c)) {
            address += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        address += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return address;
}

CResult<std::string> PathOf(std::string_view address) {
    if (!HasFileScheme(address))
        return Wrong(lng::Mark("only files on this machine (file://) can be read"), address);
    std::string_view rest = address.substr(kScheme.size());
    if (rest.starts_with("//")) {
        rest.remove_prefix(2);
        const std::string_view host = rest.substr(0, rest.find('/'));
        if (!host.empty() && !ascii_text::EqualNoCase(host, kThisMachine))
            return Wrong(lng::Mark("this address names a file on another machine"), address);
        rest.remove_prefix(host.size());
    }
    if (!rest.starts_with('/') || rest.find_first_of("?#") != rest.npos || rest.find('\0') != rest.npos)
        return Wrong(lng::Mark("this is no address of a file"), address);
    const std::optional<std::string> path = Unescaped(rest);
    if (!path) return Wrong(lng::Mark("this is no address of a file"), address);
    return *path;
}

CResult<std::string> PathOfArgument(std::string_view argument) {
    if (HasScheme(argument) || HasFileScheme(argument)) return PathOf(argument);
    return std::string(argument);
}

}  // namespace file_uri
