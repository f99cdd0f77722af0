// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "base/text/CNumberFormat.h"

struct CNumberFormatCase {
    const char* text;
    std::optional<double> value;
    bool mayBecome = true;
};
class CNumberFormatTest : public testing::TestWithParam<CNumberFormatCase> {};

TEST_P(CNumberFormatTest, TakesDecimalNumbersInRange) {
    const CNumberFormat format = CNumberFormat::General(3, 0.0, 1.0);
    EXPECT_EQ(format.Parse(GetParam().text), GetParam().value);
    EXPECT_EQ(format.MayBecomeNumber(GetParam().text), GetParam().mayBecome);
}

constexpr bool kNever = false;
constexpr std::nullopt_t kNone = std::nullopt;
INSTANTIATE_TEST_SUITE_P(
    Texts, CNumberFormatTest,
    testing::Values(CNumberFormatCase{"0", 0.0}, CNumberFormatCase{"1.000", 1.0},
                    CNumberFormatCase{"0,25", 0.25}, CNumberFormatCase{".5", 0.5},
                    CNumberFormatCase{"1.", 1.0}, CNumberFormatCase{"", kNone}, CNumberFormatCase{".", kNone},
                    CNumberFormatCase{"1.001", kNone}, CNumberFormatCase{"2", kNone},
                    CNumberFormatCase{" 0.5\n", 0.5, kNever}, CNumberFormatCase{"0.12345", 0.123, kNever},
                    CNumberFormatCase{"-0.1", kNone, kNever}, CNumberFormatCase{"1.0.0", kNone, kNever},
                    CNumberFormatCase{"0.5x", kNone, kNever}, CNumberFormatCase{"1e-1", kNone, kNever},
                    CNumberFormatCase{"nan", kNone, kNever}, CNumberFormatCase{"+1", kNone, kNever}));

TEST(CNumberFormatNegativeTest, TakesASignAndNoPointWhereTheFormatSaysSo) {
    const CNumberFormat format = CNumberFormat::General(0, -10, 10);
    EXPECT_EQ(format.Parse("-7"), -7.0);
    EXPECT_TRUE(format.MayBecomeNumber("-"));
    EXPECT_FALSE(format.MayBecomeNumber("1."));
    EXPECT_EQ(format.RangeText(), "-10 \u2013 10");
}
