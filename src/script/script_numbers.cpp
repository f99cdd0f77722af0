// SPDX-License-Identifier: MIT
#include "script/script_numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/text/ascii_text.h"
#include "base/text/number_text.h"

namespace script_numbers {
namespace {

/** Takes blanks and one sign off. */
bool TakeSign(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n\f\v"), text.size()));
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) text.remove_prefix(1);
    return isNegative;
}

bool IsHexadecimal(std::string_view text, std::string_view digits) {
    constexpr std::string_view kDigits = "0123456789abcdefABCDEF";
    if (!text.starts_with("0x") && !text.starts_with("0X")) return false;
    text.remove_prefix(2);
    if (digits.starts_with('.') && text.starts_with('.')) text.remove_prefix(1);
    return !text.empty() && kDigits.find(text.front()) != kDigits.npos;
}

double HexadecimalNumber(std::string_view digits) {
    double value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::hex);
    if (error != std::errc::result_out_of_range) return value;
    const std::string_view read = digits.substr(0, static_cast<std::size_t>(end - digits.data()));
    const std::size_t exponent = read.find_first_of("pP");
    const bool isSmall = exponent != read.npos && read.substr(exponent + 1).starts_with('-');
    return isSmall ? 0.0 : std::numeric_limits<double>::max();
}

double UnsignedNumber(std::string_view text) {
    if (IsHexadecimal(text, ".")) return HexadecimalNumber(text.substr(2));
    if (ascii_text::EqualNoCase(text.substr(0, 3), "inf")) return std::numeric_limits<double>::infinity();
    if (ascii_text::EqualNoCase(text.substr(0, 3), "nan")) return std::numeric_limits<double>::quiet_NaN();
    const bool isNumber =
        !text.empty() && (text.front() == '.' || (text.front() >= '0' && text.front() <= '9'));
    return isNumber ? number_text::ParseLeading(text).value_or(0) : 0;
}

}  // namespace

double ReadNumber(std::string_view text) {
    const bool isNegative = TakeSign(text);
    const double value = UnsignedNumber(text);
    return isNegative ? -value : value;
}

long long ReadInteger(std::string_view text) {
    const bool isNegative = TakeSign(text);
    int base = 10;
    if (IsHexadecimal(text, {})) {
        base = 16;
        text.remove_prefix(2);
    } else if (text.starts_with('0')) {
        base = 8;
    }
    long long value = 0;
    if (text.starts_with('-')) return 0;  // a second sign
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error == std::errc::result_out_of_range) value = std::numeric_limits<long long>::max();
    return isNegative ? -value : value;
}

int Milliseconds(double seconds) {
    const double ms = std::round(seconds * 1000);
    if (std::isnan(ms)) return 0;
    constexpr double kLeast = std::numeric_limits<int>::min(), kMost = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(ms, kLeast, kMost));
}

}  // namespace script_numbers
