// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/** The UTF-8 form of a text that begins with a UTF-16 byte order mark; empty for any other. Never fails:
 * whatever is not a character becomes U+FFFD. */
[[nodiscard]] std::string Utf16ToUtf8(std::string_view bytes);
