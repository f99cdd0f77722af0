// SPDX-License-Identifier: MIT
#include "modeldb/server/site/CFields.h"

#include <array>
#include <ctime>
#include <utility>

#include "base/text/number_text.h"
#include "base/text/utf8_text.h"
#include "export/webgl/page_text.h"

namespace {

constexpr char kReplacement = '?';

std::string Grouped(std::uint64_t number) {
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3; at -= 3) text.insert(at - 3, 1, ',');
    return text;
}

}  // namespace

CFields& CFields::Put(std::string_view word, std::string_view text) {
    m_values[word] = page_text::Html(utf8_text::Printable(text, kReplacement));
    return *this;
}

CFields& CFields::Lines(std::string_view word, std::string_view text) {
    std::string lines;
    while (true) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r')) line.remove_suffix(1);
        lines += page_text::Html(utf8_text::Printable(line, kReplacement));
        if (end == std::string_view::npos) break;
        lines += '\n';
        text.remove_prefix(end + 1);
    }
    m_values[word] = std::move(lines);
    return *this;
}

CFields& CFields::Number(std::string_view word, std::uint64_t number) {
    m_values[word] = Grouped(number);
    return *this;
}

CFields& CFields::Size(std::string_view word, std::uint64_t bytes) {
    m_values[word] = SizeText(bytes);
    return *this;
}

CFields& CFields::Address(std::string_view word, const CWireAddress& address) {
    m_values[word] = page_text::Html(std::string(m_basePath) + wire_address::Write(address));
    return *this;
}

CFields& CFields::Markup(std::string_view word, std::string markup) {
    m_values[word] = std::move(markup);
    return *this;
}

std::string CFields::Fill(std::string_view form) const {
    return page_text::Fill(form, m_values);
}

std::string CountText(std::uint64_t count, std::string_view noun) {
    return Grouped(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

std::string SizeText(std::uint64_t bytes) {
    constexpr std::array<std::pair<double, const char*>, 3> kUnits{
        {{1e9, " GB"}, {1e6, " MB"}, {1e3, " kB"}}};
    const auto size = static_cast<double>(bytes);
    for (const auto& [unit, name] : kUnits)
        if (size >= unit) return number_text::FormatFixed(size / unit, size < 100 * unit ? 1 : 0) + name;
    return CountText(bytes, "byte");
}

std::string DayText(std::int64_t secondsSince1970) {
    const auto seconds = static_cast<std::time_t>(secondsSince1970);
    std::tm day{};
    std::array<char, 32> text{};
    if (!::gmtime_r(&seconds, &day)) return "unknown";
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d", &day)};
}
