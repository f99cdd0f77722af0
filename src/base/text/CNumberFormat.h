// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/** How people write a number into a field, whatever the locale is: decimal, with a point. A comma counts as a
 * point, as many keyboards have nothing else beside their digits. */
class CNumberFormat {
  public:
    /** Without exponent. decimals: how many digits may follow the point, 0..17. */
    [[nodiscard]] static CNumberFormat General(int decimals, double min, double max);

    /** With all decimals, as in "0.600". */
    [[nodiscard]] std::string Format(double value) const;
    /** The number that the whole text is, blanks around it aside, rounded to the decimals. None when it is no
     * number or out of range. */
    [[nodiscard]] std::optional<double> Parse(std::string_view text) const;
    /** False for a text that no further typing makes a number, and for too many decimals. */
    [[nodiscard]] bool MayBecomeNumber(std::string_view text) const;
    /** The range, for a message: "0 – 1". */
    [[nodiscard]] std::string RangeText() const;

  private:
    CNumberFormat(int decimals, double min, double max) : m_decimals(decimals), m_min(min), m_max(max) {}

    int m_decimals;
    double m_min, m_max;
};
