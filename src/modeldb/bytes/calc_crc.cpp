// SPDX-License-Identifier: MIT
#include "modeldb/bytes/calc_crc.h"

#include <zlib.h>

#include <array>

#include "modeldb/bytes/hex_text.h"

std::uint32_t CalcCrc(std::span<const std::byte> bytes, std::uint32_t before) {
    return static_cast<std::uint32_t>(
        ::crc32_z(before, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

namespace model_key {

std::string ToText(std::uint32_t key) {
    std::array<std::byte, 4> bytes{};
    for (std::size_t i = 0; i < 4; ++i) bytes[i] = static_cast<std::byte>(key >> (24 - 8 * i));
    return hex_text::Write(bytes);
}

std::optional<std::uint32_t> FromText(std::string_view text) {
    std::array<std::byte, 4> bytes{};
    if (!hex_text::Read(text, bytes)) return std::nullopt;
    std::uint32_t key = 0;
    for (const std::byte b : bytes) key = key << 8 | std::to_integer<std::uint32_t>(b);
    return key;
}

}  // namespace model_key
