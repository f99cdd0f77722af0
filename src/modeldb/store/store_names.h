// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/CResult.h"

/** The texts of a store. */
namespace store_names {

/** BadArgument: empty, longer than so many bytes, not UTF-8, or with a zero byte in it. All other texts are names. */
[[nodiscard]] CStatus Check(std::string_view name, std::size_t mostBytes);
/** The same for a text that may be empty. */
[[nodiscard]] CStatus CheckText(std::string_view text, std::size_t mostBytes);
/** The form in which names are searched: all letters in lower case. text must be UTF-8. */
[[nodiscard]] std::string Folded(std::string_view text);

}  // namespace store_names
