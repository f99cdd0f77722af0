// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "base/text/number_text.h"

using namespace number_text;

struct CParseCase {
    const char* text;
    std::optional<double> number;
    std::optional<int> whole;
};
class NumberTextTest : public testing::TestWithParam<CParseCase> {};

TEST_P(NumberTextTest, ReadsTheNumberThatTheTextBeginsWith) {
    EXPECT_EQ(ParseLeading(GetParam().text), GetParam().number);
    EXPECT_EQ(ParseLeadingInt(GetParam().text), GetParam().whole);
}

constexpr double kMax = std::numeric_limits<double>::max();
constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();
INSTANTIATE_TEST_SUITE_P(
    Parse, NumberTextTest,
    testing::Values(CParseCase{"12.75abc", 12.75, 12}, CParseCase{" \t-3", -3.0, -3},
                    CParseCase{"+7", 7.0, 7}, CParseCase{".5", 0.5, {}}, CParseCase{"-.5", -0.5, {}},
                    CParseCase{"0,6", 0.0, 0}, CParseCase{"1e3x", 1000.0, 1}, CParseCase{"2e", 2.0, 2},
                    CParseCase{"", {}, {}}, CParseCase{"abc", {}, {}}, CParseCase{"nan", {}, {}},
                    CParseCase{"-inf", {}, {}}, CParseCase{"+-3", {}, {}}, CParseCase{"--3", {}, {}},
                    CParseCase{"-", {}, {}}, CParseCase{".", {}, {}}, CParseCase{"1e999", kMax, 1},
                    CParseCase{"-1e999", -kMax, -1}, CParseCase{"1e-999", 0.0, 1},
                    CParseCase{"99999999999", 99999999999.0, kIntMax},
                    CParseCase{"-99999999999", -99999999999.0, kIntMin}));

TEST(NumberTextFormatTest, WritesAsPrintfInTheCLocale) {
    EXPECT_EQ(FormatFixed(0.6F, 3), "0.600");
    EXPECT_EQ(FormatFixed(-1234.5678, 2), "-1234.57");
    EXPECT_EQ(FormatFixed(2.5, 0), "2");
    EXPECT_EQ(FormatFixed(std::numeric_limits<double>::quiet_NaN(), 3), "0.000");
    EXPECT_EQ(FormatFixed(kMax, 17).size(), 309U + 1 + 17);
    EXPECT_EQ(FormatShortest(0.1F), "0.1");
}
