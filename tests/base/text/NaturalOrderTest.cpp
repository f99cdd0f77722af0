// SPDX-License-Identifier: MIT
#include "base/text/natural_order.h"

#include <gtest/gtest.h>

#include <clocale>

namespace {

/** The names in the order in which they are expected. Each is compared with each, so the order is shown to be total. */
TEST(NaturalOrderTest, OrdersNamesAsPeopleDo) {
    const std::wstring names[] = {L"",
                                  L"1",
                                  L"a",
                                  L"A 2",
                                  L"a2",
                                  L"A02b",
                                  L"a10",
                                  L"a18446744073709551616",
                                  L"a18446744073709551617",
                                  L"a2000000000000000000000b",
                                  L"a_1",
                                  L"B",
                                  L"z",
                                  L"ÄB9",
                                  L"äb10",
                                  L"Ж",
                                  L"з2",
                                  L"З10"};
    for (const char* locale : {"C", "C.UTF-8"}) {
        std::setlocale(LC_ALL, locale);
        for (std::size_t i = 0; i < std::size(names); ++i) {
            for (std::size_t j = 0; j < std::size(names); ++j)
                EXPECT_EQ(
                    natural_order::Compare(natural_order::Folded(names[i]), natural_order::Folded(names[j])),
                    i <=> j)
                    << i << " " << j << " " << locale;
        }
    }
    std::setlocale(LC_ALL, "C");
}

TEST(NaturalOrderTest, CountsLettersOfOtherCaseAndLeadingZerosAsTheSame) {
    const auto order =
        natural_order::Compare(natural_order::Folded(L"Éа007x"), natural_order::Folded(L"éА7X"));
    EXPECT_EQ(order, std::strong_ordering::equal);
    // The surrogates that stand for bytes of no character stay what they are.
    const std::wstring bytes{L'A', wchar_t(0xDC80), wchar_t(0x1F600), L'Z'};
    EXPECT_EQ(natural_order::Folded(bytes), (std::wstring{L'a', wchar_t(0xDC80), wchar_t(0x1F600), L'z'}));
}

}  // namespace
