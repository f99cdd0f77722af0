// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/** The check sum of a model's file, which is its public key everywhere: CRC-32 as zip and PNG have it (polynomial
 * 0x04C11DB7 reflected; 0xCBF43926 for "123456789"). before: the sum of the bytes in front of these, for a file
 * that comes in pieces. Many files share a key; CBlobHash tells them apart. */
[[nodiscard]] std::uint32_t CalcCrc(std::span<const std::byte> bytes, std::uint32_t before = 0);

/** A key as people see and type it: eight hexadecimal digits, lower case when written. */
namespace model_key {

[[nodiscard]] std::string ToText(std::uint32_t key);
[[nodiscard]] std::optional<std::uint32_t> FromText(std::string_view text);

}  // namespace model_key
