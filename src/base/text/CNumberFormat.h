// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/** The format of a number that people type into a field: decimal, with a point, whatever the locale is. A
 * comma is read as a point, because the number pads of many keyboards have only a comma. */
class CNumberFormat {
  public:
    /** Without exponent. decimals: how many digits may follow the point, 0..17. The range includes min
     * and max. */
    [[nodiscard]] static CNumberFormat General(int decimals, double min, double max);

    /** With all decimals, as in "0.600". */
    [[nodiscard]] std::string Format(double value) const;
    /** The number that the whole text stands for, apart from blanks around it, rounded to the decimals.
     * Nothing when the text is no number or the number is out of range. */
    [[nodiscard]] std::optional<double> Parse(std::string_view text) const;
    /** False where typing more cannot turn the text into a number, and where it has too many decimals. */
    [[nodiscard]] bool MayBecomeNumber(std::string_view text) const;
    /** The range, for a message: "0 – 1". */
    [[nodiscard]] std::string RangeText() const;

  private:
    CNumberFormat(int decimals, double min, double max) : m_decimals(decimals), m_min(min), m_max(max) {}

    int m_decimals;
    double m_min, m_max;
};
