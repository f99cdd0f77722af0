// SPDX-License-Identifier: MIT
#include "base/text/natural_order.h"

#include <locale.h>
#include <wctype.h>

#include <algorithm>

#include "base/text/ascii_text.h"

namespace natural_order {

namespace {

/** A locale of the C library that knows the letters of Unicode and no language; null where it has none. */
locale_t LettersOfUnicode() {
    static const locale_t kLocale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return kLocale;
}

bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

/** The digits from position on, without zeros in front; position moves behind them. */
std::wstring_view TakeNumber(std::wstring_view text, std::size_t& position) {
    const auto notZero = text.find_first_not_of(L'0', position);
    const std::size_t begin = std::min(notZero, text.size());
    position = begin;
    while (position < text.size() && IsDigit(text[position])) ++position;
    return text.substr(begin, position - begin);
}

}  // namespace

std::wstring Folded(std::wstring_view text) {
    std::wstring folded(text);
    const locale_t letters = LettersOfUnicode();
    for (wchar_t& c : folded) {
        const bool isAscii = c >= 0 && c < 0x80;
        c = isAscii || !letters ? ascii_text::Lower(c)
                                : static_cast<wchar_t>(::towlower_l(static_cast<wint_t>(c), letters));
    }
    return folded;
}

std::strong_ordering Compare(std::wstring_view a, std::wstring_view b) {
    std::size_t i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        if (IsDigit(a[i]) && IsDigit(b[j])) {
            const std::wstring_view first = TakeNumber(a, i), second = TakeNumber(b, j);
            if (first.size() != second.size()) return first.size() <=> second.size();
            if (const int order = first.compare(second); order != 0) return order <=> 0;
        } else {
            if (a[i] != b[j]) return a[i] <=> b[j];
            ++i;
            ++j;
        }
    }
    return a.size() - i <=> b.size() - j;
}

}  // namespace natural_order
