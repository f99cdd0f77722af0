// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/** Wide text (UTF-32 here, UTF-16 pairs accepted) and UTF-8, one into the other. */
namespace file_util_ex {

/** Never fails: what is no character (a lone surrogate, a value above U+10FFFF) becomes U+FFFD. */
[[nodiscard]] std::string ConvertToUTF8(std::wstring_view text);
/** Never fails: each byte that belongs to no well-formed sequence becomes U+FFFD. */
[[nodiscard]] std::wstring ConvertFromUTF8W(std::string_view text);

}  // namespace file_util_ex
