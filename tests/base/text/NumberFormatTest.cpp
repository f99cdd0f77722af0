// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "base/text/CNumberFormat.h"

TEST(CNumberFormatTest, TakesDecimalNumbersInRange) {
    constexpr bool kNever = false;
    struct CRow {
        const char* text;
        std::optional<double> value;
        bool mayBecome = true;
    };
    const CNumberFormat format = CNumberFormat::General(3, 0.0, 1.0);
    for (const CRow& row : {CRow{"0", 0.0},
                            {"1.000", 1.0},
                            {"0,25", 0.25},
                            {".5", 0.5},
                            {"1.", 1.0},
                            {"", {}},
                            {".", {}},
                            {"1.001", {}},
                            {"2", {}},
                            {" 0.5\n", 0.5, kNever},
                            {"0.12345", 0.123, kNever},
                            {"-0.1", {}, kNever},
                            {"1.0.0", {}, kNever},
                            {"0.5x", {}, kNever},
                            {"1e-1", {}, kNever},
                            {"nan", {}, kNever},
                            {"+1", {}, kNever}}) {
        EXPECT_EQ(format.Parse(row.text), row.value) << row.text;
        EXPECT_EQ(format.MayBecomeNumber(row.text), row.mayBecome) << row.text;
    }
}

TEST(CNumberFormatTest, TakesASignAndNoPointWhereTheFormatSaysSo) {
    const CNumberFormat format = CNumberFormat::General(0, -10, 10);
    EXPECT_EQ(format.Parse("-7"), -7.0);
    EXPECT_TRUE(format.MayBecomeNumber("-"));
    EXPECT_FALSE(format.MayBecomeNumber("1."));
    EXPECT_EQ(format.RangeText(), "-10 \u2013 10");
}
