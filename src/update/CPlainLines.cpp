// SPDX-License-Identifier: MIT
#include "update/CPlainLines.h"

#include <algorithm>

#include "base/text/character_kind.h"

namespace {

bool IsBlank(wchar_t c) {
    constexpr wchar_t kNoBreakSpace = 0xA0;
    return c == L' ' || c == L'\t' || c == kNoBreakSpace ||
           character_kind::Of(c) == character_kind::EKind::LineEnd;
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
    if (character_kind::Of(c) != character_kind::EKind::Plain) return;
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
