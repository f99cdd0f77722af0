// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "files/file_util_ex.h"
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

TEST(CommandLineTest, LeavesTheToolkitItsOptions) {
    std::vector<std::wstring> texts = {L"name",      L"--display",          L":1",         L"-x",
                                       L"--class=a", L"--g-fatal-warnings", L"--displays", L"--",
                                       L"--name",    L"--gtk-module"};
    std::vector<wchar_t*> all;
    for (std::wstring& text : texts) all.push_back(text.data());
    const std::vector<wchar_t*> ours = WithoutToolkitOptions(all);
    EXPECT_EQ(std::vector<std::wstring>(ours.begin(), ours.end()),
              (std::vector<std::wstring>{L"name", L"-x", L"--displays", L"--", L"--name", L"--gtk-module"}));
}

struct CParameterCase {
    const char* name;
    const wchar_t* parameter;
    const char* path;  ///< its bytes
};

class CPathOfParameterTest : public testing::TestWithParam<CParameterCase> {};

TEST_P(CPathOfParameterTest, IsThePathOfAnAddressOfThisMachine) {
    EXPECT_EQ(file_util_ex::ConvertToUTF8(PathOfParameter(GetParam().parameter)), GetParam().path);
}

const CParameterCase kAddresses[] = {
    {"Path", L"/a%20b.3ds", "/a%20b.3ds"},
    {"Address", L"file:///a%20b/r%C3%A4der.3ds", "/a b/räder.3ds"},
    {"ByteOfNoCharacter", L"file:///r%e4der.3ds",
     "/r\xE4"
     "der.3ds"},
    {"Host", L"FILE://LocalHost/a.3ds", "/a.3ds"},
    {"OneSlash", L"file:/a.3ds", "/a.3ds"},
    {"OtherHost", L"file://there/a.3ds", "file://there/a.3ds"},
    {"LongerHost", L"file://localhost.there/a.3ds", "file://localhost.there/a.3ds"},
    {"NoDigits", L"file:///100%.3ds", "file:///100%.3ds"},
    {"EndsTooEarly", L"file:///a%4", "file:///a%4"},
    {"Nul", L"file:///a%00b", "file:///a%00b"},
    {"NoPath", L"file:a.3ds", "file:a.3ds"},
};
INSTANTIATE_TEST_SUITE_P(Parameters, CPathOfParameterTest, testing::ValuesIn(kAddresses), kRowName);

}  // namespace
