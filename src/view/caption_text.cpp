// SPDX-License-Identifier: MIT
#include "view/caption_text.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "base/text/character_kind.h"

namespace {

constexpr std::size_t kMostCharacters = 700;
constexpr int kMostMarks = 4;  ///< on one letter
constexpr wchar_t kDots = L'\x2026', kUnknown = L'\xFFFD';

struct CRange {
    char32_t first, last;
};

bool IsIn(std::span<const CRange> ranges, wchar_t character) {
    const auto code = static_cast<char32_t>(character);
    return std::any_of(ranges.begin(), ranges.end(),
                       [code](const CRange& range) { return code >= range.first && code <= range.last; });
}

/** Takes no place of its own: stands on the character before, joins it or chooses its form. */
bool IsMark(wchar_t c) {
    constexpr CRange kMarks[] = {{0x300, 0x36F},   {0x483, 0x489},   {0x591, 0x5BD},   {0x610, 0x61A},
                                 {0x64B, 0x65F},   {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200C, 0x200F},
                                 {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xE0100, 0xE01EF}};
    return IsIn(kMarks, c);
}

/** The character that is shown in place of another; 0 for none. */
wchar_t Shown(wchar_t c) {
    using enum character_kind::EKind;
    switch (character_kind::Of(c)) {
        case LineEnd:
            return L'\n';
        case Control:
            return L' ';
        case Direction:
        case Unseen:
            return 0;
        case None:
            return kUnknown;
        case DirectionMark:
        case Plain:
            break;
    }
    return c;
}

/** A blank before or after a line's end goes; three line ends in a row become two. */
void Add(std::wstring& to, wchar_t c) {
    const auto endsWith = [&to](const wchar_t* end) { return std::wstring_view(to).ends_with(end); };
    if (c == L' ' && (to.empty() || endsWith(L" ") || endsWith(L"\n"))) return;
    if (c == L'\n') {
        if (endsWith(L" ")) to.pop_back();
        if (to.empty() || endsWith(L"\n\n")) return;
    }
    to += c;
}

void TrimEnd(std::wstring& text) {
    text.erase(text.find_last_not_of(L" \n") + 1);
}

/** How many characters of a word, which is too wide, go onto a line: at least one, and none is parted from its marks. */
std::size_t Beginning(std::wstring_view word, const std::function<bool(const std::wstring&)>& fits) {
    std::size_t fitting = 0, beyond = word.size();
    while (fitting + 1 < beyond) {
        const std::size_t middle = (fitting + beyond) / 2;
        (fits(std::wstring(word.substr(0, middle))) ? fitting : beyond) = middle;
    }
    while (fitting > 0 && IsMark(word[fitting])) --fitting;
    if (fitting > 0) return fitting;
    for (fitting = 1; fitting < word.size() && IsMark(word[fitting]);) ++fitting;
    return fitting;
}

void AddWord(std::vector<std::wstring>& lines, std::wstring_view word,
             const std::function<bool(const std::wstring&)>& fits) {
    const std::wstring longer =
        lines.back().empty() ? std::wstring(word) : lines.back() + L' ' + std::wstring(word);
    if (fits(longer)) {
        lines.back() = longer;
        return;
    }
    if (!lines.back().empty()) lines.emplace_back();
    while (!fits(std::wstring(word))) {
        const std::size_t length = Beginning(word, fits);
        lines.back() = word.substr(0, length);
        word.remove_prefix(length);
        if (word.empty()) return;
        lines.emplace_back();
    }
    lines.back() = word;
}

/** The part up to the next separator, which both go from the text. */
std::wstring_view TakeUpTo(std::wstring_view& text, wchar_t separator) {
    const std::size_t end = std::min(text.find(separator), text.size());
    const std::wstring_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

}  // namespace

std::wstring CaptionText(std::wstring_view text) {
    std::wstring result;
    int marks = 0;
    wchar_t before = 0;
    for (const wchar_t c : text) {
        const bool isSecondOfPair = before == L'\r' && c == L'\n';
        before = c;
        const wchar_t shown = isSecondOfPair ? L'\0' : Shown(c);
        marks = IsMark(shown) ? marks + 1 : 0;
        if (shown == 0 || marks > kMostMarks) continue;
        if (result.size() >= kMostCharacters) {
            TrimEnd(result);
            return result + kDots;
        }
        Add(result, shown);
    }
    TrimEnd(result);
    return result;
}

std::vector<std::wstring> CaptionLines(std::wstring_view text, std::size_t maxLines,
                                       const std::function<bool(const std::wstring&)>& fits) {
    std::vector<std::wstring> lines;
    while (!text.empty() && lines.size() <= maxLines) {
        std::wstring_view line = TakeUpTo(text, L'\n');
        lines.emplace_back();
        while (!line.empty() && lines.size() <= maxLines) AddWord(lines, TakeUpTo(line, L' '), fits);
    }
    if (lines.size() <= maxLines || maxLines == 0) return maxLines == 0 ? std::vector<std::wstring>() : lines;
    lines.resize(maxLines);
    std::wstring& last = lines.back();
    while (!last.empty() && !fits(last + kDots)) last.pop_back();
    TrimEnd(last);
    last += kDots;
    return lines;
}
