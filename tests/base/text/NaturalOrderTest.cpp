// SPDX-License-Identifier: MIT
#include "base/text/natural_order.h"

#include <gtest/gtest.h>

#include <clocale>
#include <sstream>

namespace {

std::strong_ordering OrderOf(const std::wstring& a, const std::wstring& b) {
    return natural_order::Compare(natural_order::Folded(a), natural_order::Folded(b));
}

/** The names in the order in which they are expected. Each is compared with each, so the order is shown to be total. */
TEST(NaturalOrderTest, OrdersNamesAsPeopleDo) {
    const auto words = [](const std::wstring& text) {
        std::vector<std::wstring> all;
        std::wistringstream rest(text);
        for (std::wstring word; std::getline(rest, word, L'|');) all.push_back(word);
        return all;
    };
    const auto names = words(
        L"|1|a|A 2|a2|A02b|a10|a18446744073709551616|a18446744073709551617|a2000000000000000000000b|a_1|B|z|"
        L"ÄB9|äb10|Ж|з2|З10");
    for (const char* locale : {"C", "C.UTF-8"}) {
        std::setlocale(LC_ALL, locale);
        for (std::size_t i = 0; i < names.size(); ++i) {
            for (std::size_t j = 0; j < names.size(); ++j)
                EXPECT_EQ(OrderOf(names[i], names[j]), i <=> j) << i << " " << j << " " << locale;
        }
    }
    std::setlocale(LC_ALL, "C");
}

TEST(NaturalOrderTest, CountsLettersOfOtherCaseAndLeadingZerosAsTheSame) {
    EXPECT_EQ(OrderOf(L"Éа007x", L"éА7X"), std::strong_ordering::equal);
    // The surrogates that stand for bytes of no character stay what they are.
    const std::wstring bytes{L'A', wchar_t(0xDC80), wchar_t(0x1F600), L'Z'};
    EXPECT_EQ(natural_order::Folded(bytes), (std::wstring{L'a', wchar_t(0xDC80), wchar_t(0x1F600), L'z'}));
}

}  // namespace
