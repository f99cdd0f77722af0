// SPDX-License-Identifier: MIT
#include "update/CPlainLines.h"

#include <algorithm>

namespace {

bool IsBlank(wchar_t c) {
    return c == L' ' || c == L'\t' || c == L'\n' || c == L'\r' || c == 0xA0 || c == 0x2028 || c == 0x2029;
}

/** Control characters, those that change the direction of writing, and those that are seen nowhere. */
bool IsUnwanted(wchar_t c) {
    const auto code = static_cast<char32_t>(c);
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || (code >= 0x202A && code <= 0x202E) ||
           (code >= 0x2060 && code <= 0x206F) || code == 0xFEFF || code == 0x061C || code == 0x200B ||
           code == 0x200E || code == 0x200F || (code >= 0xFFF9 && code <= 0xFFFB) ||
           (code >= 0xD800 && code <= 0xDFFF) || (code >= 0xE0000 && code <= 0xE0FFF) || code > 0x10FFFF;
}

constexpr std::size_t kMostOfWord = 200, kMostOfLine = 2000;

}  // namespace

void CPlainLines::Append(wchar_t c) {
    if (IsFull()) return;
    // The toolkit takes time with the square of what it has to break by itself.
    if (c == L' ' && m_ofLine >= kMostOfLine) c = L'\n';
    if (c != L' ' && c != L'\n' && m_ofWord == kMostOfWord) {
        Append(L'\n');
        if (IsFull()) return;
    }
    m_text += c;
    m_ofLine = c == L'\n' ? 0 : m_ofLine + 1;
    m_ofWord = c == L'\n' || c == L' ' ? 0 : m_ofWord + 1;
}

void CPlainLines::AddCharacter(wchar_t c) {
    if (IsBlank(c)) {
        m_blank = true;
        return;
    }
    if (IsUnwanted(c)) return;
    const bool begins = m_text.empty() || m_isAfterBullet;
    for (; m_lineEnds > 0; --m_lineEnds)
        if (!begins) {
            Append(L'\n');
            m_blank = false;
        }
    if (m_blank && !begins && m_ofLine > 0) Append(L' ');
    m_blank = m_isAfterBullet = false;
    Append(c);
}

void CPlainLines::EndLine(int lineEnds) {
    m_lineEnds = std::max(m_lineEnds, lineEnds);
}

void CPlainLines::AddBullet() {
    EndLine(1);
    m_isAfterBullet = false;
    AddCharacter(0x2022);
    Append(L' ');
    m_isAfterBullet = true;
}

std::wstring CPlainLines::Take() && {
    if (IsFull() && m_most > 0) m_text.back() = 0x2026;
    return std::move(m_text);
}
