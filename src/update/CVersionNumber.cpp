// SPDX-License-Identifier: MIT
#include "update/CVersionNumber.h"

#include <algorithm>
#include <charconv>

#include "base/text/ascii_text.h"

namespace {

constexpr std::size_t kMostBytes = 64;
constexpr std::size_t kMostFields = 8;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return c >= 'a' && c <= 'z';
}

/** The digits, or the letters, that a text begins with. */
std::string_view RunOf(std::string_view text, bool (*belongs)(char)) {
    return text.substr(0, static_cast<std::size_t>(std::ranges::find_if_not(text, belongs) - text.begin()));
}

/** Takes the next number or word of a part before a version; "" at its end. */
std::string_view TakeRun(std::string_view& text) {
    while (!text.empty() && !IsDigit(text.front()) && !IsLetter(text.front())) text.remove_prefix(1);
    const std::string_view run = RunOf(text, !text.empty() && IsDigit(text.front()) ? IsDigit : IsLetter);
    text.remove_prefix(run.size());
    return run;
}

/** Numbers come before words, and the end before both. */
std::strong_ordering CompareRuns(std::string_view a, std::string_view b) {
    if (a.empty() || b.empty() || !IsDigit(a.front()) || !IsDigit(b.front())) return a <=> b;
    a.remove_prefix(std::min(a.find_first_not_of('0'), a.size()));
    b.remove_prefix(std::min(b.find_first_not_of('0'), b.size()));
    return a.size() != b.size() ? a.size() <=> b.size() : a <=> b;
}

std::strong_ordering CompareParts(std::string_view a, std::string_view b) {
    while (true) {
        const std::string_view ofA = TakeRun(a), ofB = TakeRun(b);
        const std::strong_ordering order = CompareRuns(ofA, ofB);
        if (std::is_neq(order) || ofA.empty()) return order;
    }
}

/** Takes "1.9.5" from the beginning of a text. */
std::optional<std::vector<std::uint64_t>> TakeFields(std::string_view& text) {
    std::vector<std::uint64_t> fields;
    do {
        if (!fields.empty()) text.remove_prefix(1);  // the dot
        std::uint64_t field = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), field);
        if (error != std::errc() || fields.size() == kMostFields) return std::nullopt;
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
        fields.push_back(field);
    } while (text.size() > 1 && text[0] == '.' && IsDigit(text[1]));
    while (!fields.empty() && fields.back() == 0) fields.pop_back();
    return fields;
}

}  // namespace

std::optional<CVersionNumber> CVersionNumber::Parse(std::string_view text) {
    text = ascii_text::Trimmed(text);
    if (text.size() > kMostBytes) return std::nullopt;
    const std::string lower = ascii_text::Lowered(text);
    std::string_view rest = lower;
    rest = rest.substr(0, rest.find('+'));
    if (rest.starts_with('v')) rest.remove_prefix(1);
    auto fields = TakeFields(rest);
    const auto mayFollow = [](char c) {
        return IsDigit(c) || IsLetter(c) || c == '.' || c == '-' || c == '_' || c == '~';
    };
    if (!fields || !std::ranges::all_of(rest, mayFollow) || rest.starts_with('.')) return std::nullopt;
    CVersionNumber version;
    version.m_fields = std::move(*fields);
    version.m_before = rest;
    return version;
}

std::strong_ordering CVersionNumber::operator<=>(const CVersionNumber& other) const {
    const std::strong_ordering fields = m_fields <=> other.m_fields;
    if (std::is_neq(fields)) return fields;
    if (m_before.empty() || other.m_before.empty()) return m_before.empty() <=> other.m_before.empty();
    return CompareParts(m_before, other.m_before);
}

bool IsNewerVersion(std::string_view text, std::string_view than) {
    const auto version = CVersionNumber::Parse(text), other = CVersionNumber::Parse(than);
    return version && other && *version > *other;
}
