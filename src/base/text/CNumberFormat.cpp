// SPDX-License-Identifier: MIT
#include "base/text/CNumberFormat.h"

#include <algorithm>
#include <cmath>

#include "base/text/ascii_text.h"
#include "base/text/number_text.h"

namespace {

constexpr std::string_view kDigits = "0123456789";

/** A number cut into pieces; digits are digits only. */
struct CPieces {
    bool negative = false;
    bool point = false;
    std::string_view whole, decimals;
};

std::optional<CPieces> Cut(std::string_view text) {
    CPieces pieces;
    pieces.negative = text.starts_with('-');
    if (pieces.negative) text.remove_prefix(1);
    const std::size_t point = text.find('.');
    pieces.point = point != std::string_view::npos;
    pieces.whole = text.substr(0, point);
    if (pieces.point) pieces.decimals = text.substr(point + 1);
    const auto isDigits = [](std::string_view digits) {
        return digits.find_first_not_of(kDigits) == std::string_view::npos;
    };
    if (!isDigits(pieces.whole) || !isDigits(pieces.decimals)) return {};
    return pieces;
}

std::string WithPoint(std::string_view text) {
    std::string copy(text);
    std::replace(copy.begin(), copy.end(), ',', '.');
    return copy;
}

}  // namespace

CNumberFormat CNumberFormat::General(int decimals, double min, double max) {
    return {decimals, min, max};
}

std::string CNumberFormat::Format(double value) const {
    return number_text::FormatFixed(value, m_decimals);
}

std::optional<double> CNumberFormat::Parse(std::string_view text) const {
    std::string number = WithPoint(ascii_text::Trimmed(text));
    const std::optional<CPieces> pieces = Cut(number);
    if (!pieces || (pieces->whole.empty() && pieces->decimals.empty())) return {};
    if (pieces->whole.empty()) number.insert(pieces->negative ? 1 : 0, "0");  // ".5"
    const std::optional<double> value = number_text::ParseLeading(number);
    if (!value || *value < m_min || *value > m_max) return {};
    return number_text::ParseLeading(Format(*value));
}

bool CNumberFormat::MayBecomeNumber(std::string_view text) const {
    const std::string number = WithPoint(text);
    const std::optional<CPieces> pieces = Cut(number);
    return pieces && (!pieces->negative || m_min < 0) && (!pieces->point || m_decimals > 0) &&
           pieces->decimals.size() <= static_cast<std::size_t>(m_decimals);
}

std::string CNumberFormat::RangeText() const {
    return number_text::FormatShortest(m_min) + " \u2013 " + number_text::FormatShortest(m_max);
}
