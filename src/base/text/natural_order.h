// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <string>
#include <string_view>

/** The order in which people expect names: "a2" before "a10", "B" beside "b". The same on every machine: it follows
 * no locale. */
namespace natural_order {

/** The text with all letters in lower case, those beyond ASCII too (one character becomes one character). */
[[nodiscard]] std::wstring Folded(std::wstring_view text);
/** Compares folded texts. Runs of the digits 0 to 9 count by their value, however long they are, and all other
 * characters by their codes. "7" and "007" are equivalent. */
[[nodiscard]] std::strong_ordering Compare(std::wstring_view a, std::wstring_view b);

}  // namespace natural_order
