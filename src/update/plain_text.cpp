// SPDX-License-Identifier: MIT
#include "update/plain_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "base/text/ascii_text.h"
#include "base/text/utf8_text.h"
#include "update/CPlainLines.h"

namespace {

constexpr std::size_t kMostNotes = 20'000;
constexpr std::size_t kMostTag = 1'000;  ///< characters; what is longer is taken for text
constexpr std::size_t kMostEntity = 10;

bool IsLetter(wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

struct CEntity {
    std::wstring_view name;
    wchar_t character;
};
constexpr CEntity kEntities[] = {
    {L"amp", L'&'},     {L"lt", L'<'},      {L"gt", L'>'},      {L"quot", L'"'},     {L"apos", L'\''},
    {L"nbsp", L' '},    {L"ndash", 0x2013}, {L"mdash", 0x2014}, {L"hellip", 0x2026}, {L"bull", 0x2022},
    {L"copy", 0xA9},    {L"laquo", 0xAB},   {L"raquo", 0xBB},   {L"lsquo", 0x2018},  {L"rsquo", 0x2019},
    {L"ldquo", 0x201C}, {L"rdquo", 0x201D}, {L"times", 0xD7},
};

/** "#8212" or "#x2014". */
std::optional<wchar_t> CharacterOfNumber(std::wstring_view name) {
    const std::string digits = file_util_ex::ConvertToUTF8(name.substr(1));
    const bool isHex = digits.starts_with('x') || digits.starts_with('X');
    const char* begin = digits.data() + (isHex ? 1 : 0);
    const char* end = digits.data() + digits.size();
    std::uint32_t code = 0;
    const auto [stop, error] = std::from_chars(begin, end, code, isHex ? 16 : 10);
    if (error != std::errc() || stop != end || code > 0x10FFFF) return std::nullopt;
    return static_cast<wchar_t>(code);
}

/** What is between "&" and ";". */
std::optional<wchar_t> CharacterOfEntity(std::wstring_view name) {
    if (name.starts_with(L'#')) return CharacterOfNumber(name);
    const auto* found = std::ranges::find(kEntities, name, &CEntity::name);
    return found != std::end(kEntities) ? std::optional(found->character) : std::nullopt;
}

template <std::size_t count>
bool IsOneOf(std::wstring_view name, const std::array<std::wstring_view, count>& names) {
    return std::ranges::find(names, name) != names.end();
}

constexpr std::array<std::wstring_view, 4> kWithoutText = {L"script", L"style", L"head", L"template"};
constexpr std::array<std::wstring_view, 13> kParagraphs = {
    L"p", L"h1", L"h2", L"h3", L"h4", L"h5", L"h6", L"ul", L"ol", L"dl", L"table", L"pre", L"blockquote"};
constexpr std::array<std::wstring_view, 9> kLines = {L"br", L"div", L"li",      L"tr",     L"dt",
                                                     L"dd", L"hr",  L"section", L"article"};

/** Goes through an HTML text. */
class CHtmlText {
  public:
    explicit CHtmlText(std::wstring_view html) : m_rest(html) {}

    std::wstring Read() {
        while (!m_rest.empty() && !m_lines.IsFull()) {
            if (!TakeTag() && !TakeEntity()) {
                m_lines.AddCharacter(m_rest.front());
                m_rest.remove_prefix(1);
            }
        }
        return std::move(m_lines).Take();
    }

  private:
    bool TakeTag();
    bool TakeEntity();
    /** end: in lower case. */
    void SkipPast(std::wstring_view end);
    void Obey(std::wstring_view name, bool isEnd);
    [[nodiscard]] std::size_t EndOfTag() const;

    std::wstring_view m_rest;
    CPlainLines m_lines{kMostNotes};
};

void CHtmlText::SkipPast(std::wstring_view end) {
    const auto isSame = [](wchar_t a, wchar_t b) { return ascii_text::Lower(a) == b; };
    const auto found = std::search(m_rest.begin(), m_rest.end(), end.begin(), end.end(), isSame);
    const auto skipped = static_cast<std::size_t>(found - m_rest.begin());
    m_rest.remove_prefix(std::min(skipped + end.size(), m_rest.size()));
}

/** Behind the ">" that does not stand in quotes; 0: there is none near. */
std::size_t CHtmlText::EndOfTag() const {
    const std::wstring_view tag = m_rest.substr(0, kMostTag);
    wchar_t quote = 0;
    for (std::size_t i = 1; i < tag.size(); ++i) {
        const wchar_t c = tag[i];
        if (quote == 0 && c == L'>') return i + 1;
        if (quote == 0 && (c == L'"' || c == L'\''))
            quote = c;
        else if (c == quote)
            quote = 0;
    }
    return tag.find(L'>') + 1;  // a quote that does not end
}

bool CHtmlText::TakeTag() {
    if (!m_rest.starts_with(L'<')) return false;
    if (m_rest.starts_with(L"<!--")) {
        SkipPast(L"-->");
        return true;
    }
    std::wstring_view name = m_rest.substr(1);
    const bool isEnd = name.starts_with(L'/');
    if (isEnd) name.remove_prefix(1);
    const bool isOther = !isEnd && (name.starts_with(L'!') || name.starts_with(L'?'));
    const std::size_t end = EndOfTag();
    if (end == 0 || name.empty() || !(IsLetter(name.front()) || isOther)) return false;
    const auto isInName = [](wchar_t c) { return IsLetter(c) || (c >= L'0' && c <= L'9'); };
    name = name.substr(0, static_cast<std::size_t>(std::ranges::find_if_not(name, isInName) - name.begin()));
    m_rest.remove_prefix(end);
    Obey(ascii_text::Lowered(std::wstring(name)), isEnd);
    return true;
}

void CHtmlText::Obey(std::wstring_view name, bool isEnd) {
    if (!isEnd && IsOneOf(name, kWithoutText)) {
        SkipPast(L"</" + std::wstring(name));
        SkipPast(L">");
    } else if (!isEnd && name == L"li") {
        m_lines.AddBullet();
    } else if (IsOneOf(name, kParagraphs)) {
        m_lines.EndLine(2);
    } else if (IsOneOf(name, kLines)) {
        m_lines.EndLine(1);
    }
}

bool CHtmlText::TakeEntity() {
    if (!m_rest.starts_with(L'&')) return false;
    const std::size_t length = m_rest.substr(0, kMostEntity).find(L';');
    if (length == m_rest.npos || length < 2) return false;
    const auto character = CharacterOfEntity(m_rest.substr(1, length - 1));
    if (character) {
        m_lines.AddCharacter(*character);
        m_rest.remove_prefix(length + 1);
    }
    return character.has_value();
}

/** A text that nobody marked up: its lines are the lines. */
std::wstring LinesOf(std::wstring_view text) {
    CPlainLines lines(kMostNotes);
    int ends = 0;
    for (const wchar_t c : text) {
        if (lines.IsFull()) break;
        if (c == L'\n') lines.EndLine(std::min(++ends, 2));
        if (c != L'\n' && c != L'\r' && c != L' ' && c != L'\t') ends = 0;
        lines.AddCharacter(c);
    }
    return std::move(lines).Take();
}

bool IsHtml(std::wstring_view text) {
    for (std::size_t at = text.find(L'<'); at < text.size(); at = text.find(L'<', at + 1))
        if (at + 1 < text.size() && (IsLetter(text[at + 1]) || text[at + 1] == L'/' || text[at + 1] == L'!'))
            return true;
    return false;
}

}  // namespace

std::wstring PlainLine(std::string_view text, std::size_t mostCharacters) {
    CPlainLines line(mostCharacters);
    for (const wchar_t c : file_util_ex::ConvertFromUTF8W(text)) line.AddCharacter(c);
    return std::move(line).Take();
}

std::wstring PlainNotes(std::string_view html) {
    const std::wstring text = file_util_ex::ConvertFromUTF8W(html);
    return IsHtml(text) ? CHtmlText(text).Read() : LinesOf(text);
}
