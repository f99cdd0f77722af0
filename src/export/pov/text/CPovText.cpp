// SPDX-License-Identifier: MIT
#include "export/pov/text/CPovText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace {

constexpr std::size_t kLongestNumber = 32;
constexpr std::size_t kLongestName = 100;

template <class T>
char* PutShortest(char* at, T value) {
    return std::to_chars(at, at + kLongestNumber, std::isfinite(value) ? value : T{0}).ptr;
}

constexpr std::array<std::uint64_t, 19> kPowers = [] {
    std::array<std::uint64_t, 19> powers{};
    std::uint64_t power = 1;
    for (std::uint64_t& p : powers) {
        p = power;
        power *= 10;
    }
    return powers;
}();

}  // namespace

char* CPovText::Reserve(std::size_t count) {
    if (m_capacity - m_size < count) {
        m_capacity = std::max<std::size_t>({m_capacity * 2, m_size + count, 4096});
        std::unique_ptr<char[]> larger(new char[m_capacity]);  // make_unique would clear it
        if (m_size > 0) std::memcpy(larger.get(), m_text.get(), m_size);
        m_text = std::move(larger);
    }
    return m_text.get() + m_size;
}

CPovText& CPovText::operator<<(std::string_view text) {
    if (text.empty()) return *this;
    std::memcpy(Reserve(text.size()), text.data(), text.size());
    m_size += text.size();
    return *this;
}

CPovText& CPovText::operator<<(char c) {
    *Reserve(1) = c;
    ++m_size;
    return *this;
}

CPovText& CPovText::operator<<(std::uint32_t value) {
    char* at = Reserve(kLongestNumber);
    m_size += static_cast<std::size_t>(std::to_chars(at, at + kLongestNumber, value).ptr - at);
    return *this;
}

CPovText& CPovText::operator<<(float value) {
    char* at = Reserve(kLongestNumber);
    m_size += static_cast<std::size_t>(PutShortest(at, value) - at);
    return *this;
}

CPovText& CPovText::operator<<(double value) {
    char* at = Reserve(kLongestNumber);
    m_size += static_cast<std::size_t>(PutShortest(at, value) - at);
    return *this;
}

CPovText& CPovText::operator<<(CVec3 v) {
    return *this << '<' << v.x << ',' << v.y << ',' << v.z << '>';
}

void CPovText::AppendFixed(std::int64_t value, int decimals) {
    char* const start = Reserve(kLongestNumber);
    char* at = start;
    if (value < 0) *at++ = '-';
    std::uint64_t rest =
        value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    const std::uint64_t one = kPowers[static_cast<std::size_t>(decimals)];
    const std::uint64_t whole = rest / one;
    std::uint64_t fraction = rest % one;
    if (whole > 0 || fraction == 0) at = std::to_chars(at, at + kLongestNumber, whole).ptr;
    if (fraction > 0) {
        *at++ = '.';
        for (int place = decimals; place > 0 && fraction > 0; --place) {
            const std::uint64_t unit = kPowers[static_cast<std::size_t>(place - 1)];
            *at++ = static_cast<char>('0' + fraction / unit);
            fraction %= unit;
        }
    }
    m_size += static_cast<std::size_t>(at - start);
}

void CPovText::AppendIndices(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
    char* const start = Reserve(3 * kLongestNumber);
    char* at = start;
    *at++ = '<';
    at = std::to_chars(at, at + kLongestNumber, a).ptr;
    *at++ = ',';
    at = std::to_chars(at, at + kLongestNumber, b).ptr;
    *at++ = ',';
    at = std::to_chars(at, at + kLongestNumber, c).ptr;
    *at++ = '>';
    m_size += static_cast<std::size_t>(at - start);
}

namespace pov_text {

std::string CommentText(std::string_view name) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (const char c : name.substr(0, kLongestName)) {
        const auto byte = static_cast<unsigned char>(c);
        // A line that ends in a backslash goes on in the next one for some readers.
        const bool plain =
            byte >= 32 && byte <= 126 && std::string_view("*/%\\\"").find(c) == std::string_view::npos;
        if (plain) {
            text += c;
        } else {
            text += '%';
            text += kDigits[byte >> 4];
            text += kDigits[byte & 15];
        }
    }
    return text;
}

std::string FileStem(std::string_view name) {
    constexpr std::size_t kLongestStem = 40;
    std::string stem;
    std::uint32_t hash = 2166136261u;  // FNV-1a
    for (const char c : name) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
        const bool plain =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
        if (stem.size() < kLongestStem) stem += plain ? c : '_';
    }
    if (stem != name || stem.empty()) stem += '_' + std::to_string(hash);
    return stem;
}

}  // namespace pov_text
