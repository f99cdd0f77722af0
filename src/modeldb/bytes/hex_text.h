// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

/** Bytes as hexadecimal digits. */
namespace hex_text {

/** Two lower-case digits for each byte. */
[[nodiscard]] std::string Write(std::span<const std::byte> bytes);
/** Fills bytes from a text of exactly their digits, in any case; false for any other text. */
[[nodiscard]] bool Read(std::string_view text, std::span<std::byte> bytes);

}  // namespace hex_text
