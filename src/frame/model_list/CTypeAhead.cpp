// SPDX-License-Identifier: MIT
#include "frame/model_list/CTypeAhead.h"

#include <algorithm>

#include "frame/model_list/CModelList.h"

std::optional<std::size_t> CTypeAhead::Type(wchar_t letter, const CModelList& list, CTime now) {
    if (!IsTyping(now)) m_typed.clear();
    m_last = now;
    m_typed += letter;
    const bool isRepeated = std::ranges::all_of(m_typed, [letter](wchar_t c) { return c == letter; });
    if (m_typed.size() > 1)
        if (const auto found = list.FindName(m_typed, list.Cursor())) return found;
    // A first letter looks behind the cursor, or a name of that letter would hold it for ever.
    if (isRepeated) return list.FindName(std::wstring(1, letter), list.Cursor() + 1);
    return std::nullopt;
}
