// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "base/text/number_text.h"

using namespace number_text;

constexpr double kMax = std::numeric_limits<double>::max();
constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();

TEST(NumberTextTest, ReadsTheNumberThatTheTextBeginsWith) {
    struct CRow {
        const char* text;
        std::optional<double> number;
        std::optional<int> whole;
    };
    for (const CRow& row : {CRow{"12.75abc", 12.75, 12},
                            {" \t-3", -3.0, -3},
                            {"+7", 7.0, 7},
                            {".5", 0.5, {}},
                            {"-.5", -0.5, {}},
                            {"0,6", 0.0, 0},
                            {"1e3x", 1000.0, 1},
                            {"2e", 2.0, 2},
                            {"1e999", kMax, 1},
                            {"-1e999", -kMax, -1},
                            {"1e-999", 0.0, 1},
                            {"99999999999", 99999999999.0, kIntMax},
                            {"-99999999999", -99999999999.0, kIntMin}}) {
        EXPECT_EQ(ParseLeading(row.text), row.number) << row.text;
        EXPECT_EQ(ParseLeadingInt(row.text), row.whole) << row.text;
    }
    for (const char* none : {"", "abc", "nan", "-inf", "+-3", "--3", "-", "."}) {
        EXPECT_EQ(ParseLeading(none), std::nullopt) << none;
        EXPECT_EQ(ParseLeadingInt(none), std::nullopt) << none;
    }
}

TEST(NumberTextFormatTest, WritesAsPrintfInTheCLocale) {
    EXPECT_EQ(FormatFixed(0.6F, 3), "0.600");
    EXPECT_EQ(FormatFixed(-1234.5678, 2), "-1234.57");
    EXPECT_EQ(FormatFixed(2.5, 0), "2");
    EXPECT_EQ(FormatFixed(std::numeric_limits<double>::quiet_NaN(), 3), "0.000");
    EXPECT_EQ(FormatFixed(kMax, 17).size(), 309U + 1 + 17);
    EXPECT_EQ(FormatShortest(0.1F), "0.1");
}
