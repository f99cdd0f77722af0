// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/** Numbers as text, whatever the locale is. */
namespace number_text {

/** The decimal number that the text begins with, after blanks and one optional '+'; what follows it is
 * ignored. Nothing when no digit is there; words ("inf", "nan") are no numbers. A number beyond the type's
 * range gives its largest value, one that is too small gives 0. */
[[nodiscard]] std::optional<double> ParseLeading(std::string_view text);
/** The same for a decimal whole number. One out of range gives the nearest value. */
[[nodiscard]] std::optional<int> ParseLeadingInt(std::string_view text);

/** As printf's "%.<decimals>f" writes it in the C locale. A value that is not finite is written as 0.
 * decimals: 0..17. */
[[nodiscard]] std::string FormatFixed(double value, int decimals);
/** Appends FormatFixed(value, decimals) to out. */
void AppendFixed(std::string& out, double value, int decimals);
/** The shortest text that reads back as the same value; "0" for one that is not finite. */
[[nodiscard]] std::string FormatShortest(float value);
[[nodiscard]] std::string FormatShortest(double value);

}  // namespace number_text
