// SPDX-License-Identifier: MIT
#include "base/text/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace number_text {
namespace {

constexpr std::string_view kDigits = "0123456789";

// The text from its sign on, without blanks and '+'; empty when no number can begin there.
std::string_view NumberAt(std::string_view text, std::string_view firsts) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n\f\v"), text.size()));
    if (text.starts_with('+'))
        text.remove_prefix(1);
    else if (text.starts_with('-'))
        firsts = text.size() > 1 && firsts.find(text[1]) != firsts.npos ? "-" : "";
    return !text.empty() && firsts.find(text.front()) != firsts.npos ? text : std::string_view();
}

// from_chars leaves the value alone when it is out of range; the exponent's sign tells on which side.
double OutOfRange(std::string_view number) {
    const std::size_t exponent = number.find_first_of("eE");
    const bool small = exponent != number.npos ? number.substr(exponent + 1).starts_with('-')
                                               : number.find('.') < std::min<std::size_t>(number.size(), 300);
    const double size = small ? 0.0 : std::numeric_limits<double>::max();
    return number.starts_with('-') ? -size : size;
}

template <class Number>
std::string Shortest(Number value) {
    std::array<char, 32> buffer = {};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::isfinite(value) ? value : 0);
    return {buffer.data(), end.ptr};
}

}  // namespace

std::optional<double> ParseLeading(std::string_view text) {
    const std::string_view number = NumberAt(text, "0123456789.");
    double value = 0;
    const auto end = std::from_chars(number.data(), number.data() + number.size(), value);
    if (end.ec == std::errc::result_out_of_range) {
        return OutOfRange(number.substr(0, static_cast<std::size_t>(end.ptr - number.data())));
    }
    if (end.ec != std::errc()) return std::nullopt;
    return value;
}

std::optional<int> ParseLeadingInt(std::string_view text) {
    const std::string_view number = NumberAt(text, kDigits);
    int value = 0;
    const auto end = std::from_chars(number.data(), number.data() + number.size(), value);
    if (end.ec == std::errc::result_out_of_range) {
        return number.starts_with('-') ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
    }
    if (end.ec != std::errc()) return std::nullopt;
    return value;
}

void AppendFixed(std::string& out, double value, int decimals) {
    // The longest: sign, 309 digits, point, decimals.
    std::array<char, 336> buffer = {};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::isfinite(value) ? value : 0.0,
                      std::chars_format::fixed, std::clamp(decimals, 0, 17));
    out.append(buffer.data(), end.ptr);
}

std::string FormatFixed(double value, int decimals) {
    std::string out;
    AppendFixed(out, value, decimals);
    return out;
}

std::string FormatShortest(float value) {
    return Shortest(value);
}
std::string FormatShortest(double value) {
    return Shortest(value);
}

}  // namespace number_text
