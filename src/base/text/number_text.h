// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/** Numbers as text, whatever the locale is. */
namespace number_text {

/** The decimal number that the text begins with, after blanks and one optional '+'; what follows it is
 * ignored. None when there is no digit there, and for words ("inf", "nan"). Beyond the type's range: its
 * largest value, or 0 when too small. */
[[nodiscard]] std::optional<double> ParseLeading(std::string_view text);
/** The same for the whole number that the text begins with, in decimal. Beyond the range:
 * the nearest value. */
[[nodiscard]] std::optional<int> ParseLeadingInt(std::string_view text);

/** As printf's "%.<decimals>f" writes it in the C locale. What is not finite is written as
 * 0. decimals 0..17. */
[[nodiscard]] std::string FormatFixed(double value, int decimals);
/** Appends to a text that is being built. */
void AppendFixed(std::string& out, double value, int decimals);
/** The shortest text that reads back as the same value; not finite: 0. */
[[nodiscard]] std::string FormatShortest(float value);
[[nodiscard]] std::string FormatShortest(double value);

}  // namespace number_text
