// SPDX-License-Identifier: MIT
#include "export/pov/text/CPovText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <tuple>

namespace {

TEST(CPovTextTest, WritesNumbersWithoutNeedlessDigits) {
    for (const auto& [value, decimals, expected] : {std::tuple{std::int64_t{0}, 4, "0"},
                                                    {-1250, 3, "-1.25"},
                                                    {5, 3, ".005"},
                                                    {-5, 1, "-.5"},
                                                    {70, 1, "7"},
                                                    {-7, 0, "-7"},
                                                    {1000000001, 9, "1.000000001"},
                                                    {INT64_MIN, 9, "-9223372036.854775808"}}) {
        CPovText text;
        text.AppendFixed(value, decimals);
        EXPECT_EQ(text.View(), expected);
    }
    EXPECT_EQ(pov_text::Of(CVec3{0.5f, -1.25f, 1e-7f}), "<0.5,-1.25,1e-07>");
    EXPECT_EQ(pov_text::Of(std::numeric_limits<float>::quiet_NaN()), "0");
    EXPECT_EQ(pov_text::Of(std::numeric_limits<double>::infinity()), "0");
}

TEST(CPovTextTest, KeepsWhatWasWrittenWhenItGrows) {
    CPovText text;
    std::string expected;
    for (std::uint32_t i = 0; i < 5000; ++i) {
        text << i << ' ';
        expected += std::to_string(i) + ' ';
    }
    EXPECT_EQ(text.View(), expected);
}

TEST(CPovTextTest, NamesCannotLeaveTheirComment) {
    EXPECT_EQ(pov_text::CommentText("Haus 7"), "Haus 7");
    EXPECT_EQ(pov_text::CommentText("a\n#b*/\"\\%\x80"), "a%0A#b%2A%2F%22%5C%25%80");
    EXPECT_LE(pov_text::CommentText(std::string(5000, '\n')).size(), 300u);
}

TEST(CPovTextTest, FileStemsAreAsciiAndDiffer) {
    EXPECT_EQ(pov_text::FileStem("car_2"), "car_2");
    const std::string a = pov_text::FileStem("\xC3\xA4 b"), b = pov_text::FileStem("\xC3\xB6 b");
    EXPECT_NE(a, b);
    for (const std::string& stem : {a, b, pov_text::FileStem(""), pov_text::FileStem("x\".pov\n")}) {
        EXPECT_FALSE(stem.empty());
        EXPECT_EQ(stem.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_"),
                  std::string::npos)
            << stem;
    }
}

}  // namespace
