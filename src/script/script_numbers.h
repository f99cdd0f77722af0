// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/** Numbers of scene scripts, as the C library's wcstod and wcstol read them, whatever the locale is: blanks may lead, what
 * follows the number does not count, and a text that begins with none is 0. */
namespace script_numbers {

/** As wcstod: decimal, or hexadecimal after "0x"; "inf", "infinity" and "nan" in any case. Too large: the largest double. */
[[nodiscard]] double ReadNumber(std::string_view text);
/** As wcstol with base 0: hexadecimal after "0x", octal after "0", else decimal. Too large: the nearest value. */
[[nodiscard]] long long ReadInteger(std::string_view text);
/** Seconds as whole milliseconds, halves away from zero. NaN is 0; what does not fit is limited. */
[[nodiscard]] int Milliseconds(double seconds);

}  // namespace script_numbers
