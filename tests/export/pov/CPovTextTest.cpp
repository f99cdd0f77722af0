// SPDX-License-Identifier: MIT
#include "export/pov/text/CPovText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <limits>

namespace {

struct CFixed {
    std::int64_t value;
    int decimals;
    const char* text;
};
class AppendFixed : public testing::TestWithParam<CFixed> {};

TEST_P(AppendFixed, WritesWithoutNeedlessDigits) {
    CPovText text;
    text.AppendFixed(GetParam().value, GetParam().decimals);
    EXPECT_EQ(text.View(), GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(CPovText, AppendFixed,
                         testing::Values(CFixed{0, 4, "0"}, CFixed{-1250, 3, "-1.25"}, CFixed{5, 3, ".005"},
                                         CFixed{-5, 1, "-.5"}, CFixed{70, 1, "7"}, CFixed{-7, 0, "-7"},
                                         CFixed{1000000001, 9, "1.000000001"},
                                         CFixed{INT64_MIN, 9, "-9223372036.854775808"}));

TEST(CPovText, NumbersFollowNoLocaleAndAreAlwaysNumbers) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    (void)(std::setlocale(LC_ALL, "de_DE.UTF-8") || std::setlocale(LC_ALL, "fr_FR.UTF-8"));
    EXPECT_EQ(pov_text::Of(CVec3{0.5f, -1.25f, 1e-7f}), "<0.5,-1.25,1e-07>");
    EXPECT_EQ(pov_text::Of(std::numeric_limits<float>::quiet_NaN()), "0");
    EXPECT_EQ(pov_text::Of(std::numeric_limits<double>::infinity()), "0");
    std::setlocale(LC_ALL, before.c_str());
}

TEST(CPovText, KeepsWhatWasWrittenWhenItGrows) {
    CPovText text;
    std::string expected;
    for (std::uint32_t i = 0; i < 5000; ++i) {
        text << i << ' ';
        expected += std::to_string(i) + ' ';
    }
    EXPECT_EQ(text.View(), expected);
}

TEST(CPovText, NamesCannotLeaveTheirComment) {
    EXPECT_EQ(pov_text::CommentText("Haus 7"), "Haus 7");
    EXPECT_EQ(pov_text::CommentText("a\n#b*/\"\\%\x80"), "a%0A#b%2A%2F%22%5C%25%80");
    EXPECT_LE(pov_text::CommentText(std::string(5000, '\n')).size(), 300u);
}

TEST(CPovText, FileStemsAreAsciiAndDiffer) {
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
