// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "programs/orbivue/command_line.h"
#include "row_name.h"

namespace {

struct CJoinCase {
    const char* name;
    std::vector<std::wstring> parameters;
    std::vector<std::wstring> files;
    std::wstring expected;
};

class CJoinModelPathTest : public testing::TestWithParam<CJoinCase> {};

TEST_P(CJoinModelPathTest, JoinsUntilAFileIsNamed) {
    const CJoinCase& c = GetParam();
    const auto exists = [&c](const std::wstring& path) {
        return std::find(c.files.begin(), c.files.end(), path) != c.files.end();
    };
    EXPECT_EQ(JoinModelPath(c.parameters, exists), c.expected);
}

const CJoinCase kParameters[] = {
    {"None", {}, {}, L""},
    {"SplitAtABlank", {L"My", L"car.3ds"}, {L"My car.3ds"}, L"My car.3ds"},
    {"RestIsIgnored", {L"a.3ds", L"extra"}, {L"a.3ds"}, L"a.3ds"},
    {"RestIsJoinedToNoFile", {L"a.3ds", L"extra"}, {}, L"a.3ds extra"},
    {"EmptyOnesFirst", {L"", L"a.3ds"}, {L"a.3ds"}, L"a.3ds"},
    {"FirstFileWins", {L"a", L"b", L"c"}, {L"a b", L"a b c"}, L"a b"},
};
INSTANTIATE_TEST_SUITE_P(Parameters, CJoinModelPathTest, testing::ValuesIn(kParameters), kRowName);

TEST(CommandLineTest, HelpNeedsNoWindow) {
    using CArguments = std::vector<std::wstring>;
    EXPECT_TRUE(NeedsNoWindow(CArguments{L"-h"}));
    EXPECT_TRUE(NeedsNoWindow(CArguments{L"a.3ds", L"--help"}));
    EXPECT_FALSE(NeedsNoWindow(CArguments{}));
    EXPECT_FALSE(NeedsNoWindow(CArguments{L"a.3ds"}));
    EXPECT_FALSE(NeedsNoWindow(CArguments{L"--", L"-h"}));
}

TEST(ConversionPathsTest, TakesOneOrTwoParameters) {
    const auto output = [](std::vector<std::wstring> parameters) {
        const auto paths = ConversionPathsOf(parameters);
        return paths ? paths->output : L"none";
    };
    EXPECT_EQ(output({L"a.3ds"}), L"a.pov");
    EXPECT_EQ(output({L"/m/v1.2/car"}), L"/m/v1.2/car.pov");
    EXPECT_EQ(output({L"a.3ds", L"b.pov"}), L"b.pov");
    EXPECT_EQ(output({}), L"none");
    EXPECT_EQ(output({L"a", L"b", L"c"}), L"none");
}

}  // namespace
