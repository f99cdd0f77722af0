// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/** The 8-bit code pages in which programs for DOS and early Windows wrote names: 1251, 866, 1252 and 437. */
namespace code_pages {

inline constexpr std::size_t kCount = 4;

/** The text that the bytes mean in page number 0..kCount-1; U+FFFD for bytes without a character. */
[[nodiscard]] std::u32string Decode(std::string_view bytes, std::size_t page);

}  // namespace code_pages
