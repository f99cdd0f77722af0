// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "base/text/utf8_text.h"

/** Names as lib3ds keeps them: in fields of 64 bytes that end with a zero. A longer name is cut everywhere by
 * this one rule, so that what refers to it by its name still finds it. */
namespace lib3ds_name {

constexpr std::size_t kFieldSize = 64;
constexpr std::size_t kMaxBytes = kFieldSize - 1;

/** As much of the name as fits with the suffix behind it, not cut inside a UTF-8 character. */
[[nodiscard]] inline std::string_view Cut(std::string_view name, std::string_view suffix = {}) {
    return utf8_text::Cut(name, kMaxBytes - std::min(kMaxBytes, suffix.size()));
}

/** The name, cut, with a suffix that stays whole as far as it fits itself. */
[[nodiscard]] inline std::string WithSuffix(std::string_view name, std::string_view suffix) {
    return std::string(Cut(name, suffix)).append(Cut(suffix));
}

}  // namespace lib3ds_name

/** Puts a name into a field of a structure, cut to its size, and zeroes the rest of the field. */
template <std::size_t Size>
void CopyName(char (&field)[Size], std::string_view name) {
    name = utf8_text::Cut(name, Size - 1);
    std::fill(std::copy(name.begin(), name.end(), field), field + Size, '\0');
}
