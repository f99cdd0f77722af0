// SPDX-License-Identifier: MIT
#include "export/drive/ui/run_helper.h"

#include <gtest/gtest.h>
#include <wx/timer.h>

#include <array>

#include "export/drive/drive_command_line.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "row_name.h"

namespace {

struct CArgumentCase {
    const char* name;
    const wchar_t* argument;
};
class RunHelperWxTest : public testing::TestWithParam<CArgumentCase> {
  protected:
    /** Runs a helper that notes its arguments, each ended by "|". */
    std::string Told(const std::wstring& argument, const std::string& more = {}) {
        const std::string helper =
            folder.Add("the helper", "#!/bin/sh\nprintf '%s|' \"$@\" >'" + (folder / "told") + "'\n" + more);
        std::filesystem::permissions(helper, std::filesystem::perms::owner_all);
        const std::array arguments{file_util_ex::PathFromBytes(helper), argument, std::wstring(L"last")};
        RunHelper(CommandLineOf(arguments));
        return CTestFolder::TextOf(folder / "told");
    }
    const CTestFolder folder;
};

TEST_P(RunHelperWxTest, GivesArgumentsAsTheyAre) {
    EXPECT_EQ(Told(GetParam().argument), file_util_ex::ConvertToUTF8(GetParam().argument) + "|last|");
}

const CArgumentCase kArguments[] = {
    {"Blanks", L"a  b "},       {"Empty", L""},
    {"Quotes", L"\"a\" 'b'"},   {"Backslashes", L"\\\"\\"},
    {"LineBreak", L"a\nb\tc"},  {"Option", L"--flag=x"},
    {"Shell", L"$(id);`id`|&"}, {"Turned", L"a\u202Egnp"},
    {"Umlaut", L"\u00E4"},
};
INSTANTIATE_TEST_SUITE_P(Arguments, RunHelperWxTest, testing::ValuesIn(kArguments), kRowName);

TEST_F(RunHelperWxTest, ServesEventsUntilItsEnd) {
    int ticks = 0;
    wxTimer timer;
    timer.Bind(wxEVT_TIMER, [&](wxTimerEvent&) { ++ticks; });
    timer.Start(20);
    (void)Told(L"a", "echo out; echo errors >&2; sleep 0.6; echo done >>'" + (folder / "told") + "'\n");
    EXPECT_GT(ticks, 2);
    EXPECT_EQ(CTestFolder::TextOf(folder / "told"), "a|last|done\n");
}

}  // namespace
