// SPDX-License-Identifier: MIT
#include "modeldb/bytes/hex_text.h"

#include <charconv>
#include <cstdint>

namespace hex_text {

std::string Write(std::span<const std::byte> bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const std::byte b : bytes) {
        text += kDigits[std::to_integer<std::size_t>(b) >> 4];
        text += kDigits[std::to_integer<std::size_t>(b) & 15];
    }
    return text;
}

bool Read(std::string_view text, std::span<std::byte> bytes) {
    if (text.size() != bytes.size() * 2) return false;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char* first = text.data() + i * 2;
        std::uint8_t value = 0;
        const auto [end, error] = std::from_chars(first, first + 2, value, 16);
        if (error != std::errc() || end != first + 2) return false;
        bytes[i] = std::byte{value};
    }
    return true;
}

}  // namespace hex_text
