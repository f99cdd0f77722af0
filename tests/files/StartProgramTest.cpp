// SPDX-License-Identifier: MIT
#include "files/start_program.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "files/CTestFolder.h"

namespace {

using namespace std::chrono_literals;

struct COutput {
    std::string text;
    int code = -1;
};

COutput RunProgram(const CProgramToStart& what) {
    CResult<CStartedProgram> started = StartProgram(what);
    if (!started) return {started.Error().Text(), -1};
    COutput output{{}, started.Value().WaitForEnd(20s).value_or(-2)};
    std::string errors;
    started.Value().ReadOutput(output.text, errors, 1000);
    output.text += errors;
    return output;
}

COutput RunShell(const std::string& script, const std::vector<std::string>& arguments = {},
                 const std::string& folder = "/usr") {
    CProgramToStart shell{"sh", {"-c", script, "name"}, folder, true};
    shell.arguments.insert(shell.arguments.end(), arguments.begin(), arguments.end());
    return RunProgram(shell);
}

TEST(StartProgramTest, GivesArgumentsAsTheyAreAndTheFolder) {
    EXPECT_EQ(RunShell("echo \"$PWD\"; printf '<%s>' \"$@\"", {"-a", "b 'c' $d", "\xE4", ""}).text,
              "/usr\n<-a><b 'c' $d><\xE4><>");
    EXPECT_EQ(RunShell("pwd", {}, "/no/such/folder").text, std::filesystem::current_path().string() + "\n");
}

TEST(StartProgramTest, GivesTheEnvironmentThatWasKept) {
    ::setenv("ORBIVUE_TEST", "the user's", 1);
    ::setenv("DESKTOP_STARTUP_ID", "ours", 1);
    const std::string script = "echo \"$ORBIVUE_TEST ${DESKTOP_STARTUP_ID-none}\"";
    {
        const CUserEnvironment environment;
        ::setenv("ORBIVUE_TEST", "ours", 1);
        EXPECT_EQ(RunShell(script).text, "the user's none\n");
    }
    ::unsetenv("DESKTOP_STARTUP_ID");
    EXPECT_EQ(RunShell(script).text, "ours none\n");
    ::unsetenv("ORBIVUE_TEST");
}

TEST(StartProgramTest, GivesInputAndOutlivesItsReader) {
    CProgramToStart reader{"sh", {"-c", "read -r line; echo \"got $line\""}, "/", true};
    reader.takesInput = true;
    CResult<CStartedProgram> started = StartProgram(reader);
    ASSERT_TRUE(started);
    EXPECT_TRUE(started.Value().WriteInput("one\ntwo"));
    EXPECT_EQ(started.Value().WaitForEnd(20s), 0);
    std::string output, errors;
    started.Value().ReadOutput(output, errors, 1000);
    EXPECT_EQ(output, "got one\n");
    EXPECT_FALSE(started.Value().WriteInput("more")) << "and no signal";
}

TEST(StartProgramTest, KeepsFilesAndSignalsToItself) {
    const CFileDescriptor file(::open("/dev/null", O_RDONLY));
    const CFileDescriptor inherited(::dup2(file.Get(), 200));  // without O_CLOEXEC
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t blocked, before;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const COutput signals =
        RunProgram({"grep", {"-E", "Sig(Blk|Ign):.*[^0]$", "/proc/self/status"}, {}, true});
    const COutput files = RunShell("[ ! -e /proc/$$/fd/200 ] || echo open; cat; kill -PIPE $$");
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    std::signal(SIGPIPE, SIG_DFL);
    EXPECT_EQ(signals.text, "");
    EXPECT_EQ(files.text, "");
    EXPECT_EQ(files.code, 128 + SIGPIPE);
}

TEST(StartProgramTest, SaysWhatIsNotInstalled) {
    EXPECT_EQ(RunProgram({"no-such-program", {}, {}, true}).text,
              "no-such-program: this program is not installed");
    EXPECT_EQ(RunProgram({"/etc/passwd", {}, {}, true}).text, "/etc/passwd: you have no permission for this");
}

TEST(StartProgramTest, AProgramBesideTheDocumentIsNotTaken) {
    const CTestFolder folder;
    std::filesystem::permissions(folder.Add("no-such-program", "#!/bin/sh\n"), std::filesystem::perms::all);
    const std::string path = ::getenv("PATH");
    ::setenv("PATH", (".::" + path).c_str(), 1);
    std::filesystem::current_path(folder.Path());
    EXPECT_EQ(RunProgram({"no-such-program", {}, folder.Path(), true}).code, -1);
    std::filesystem::current_path("/");
    ::setenv("PATH", path.c_str(), 1);
}

TEST(StartProgramTest, EndsOnlyWhenItIsKilled) {
    CResult<CStartedProgram> started = StartProgram({"sleep", {"60"}, {}, true});
    ASSERT_TRUE(started);
    EXPECT_EQ(started.Value().WaitForEnd(30ms), std::nullopt);
    started.Value().Kill();
    EXPECT_EQ(started.Value().WaitForEnd(10s), 128 + SIGKILL);
}

TEST(StartProgramTest, AProgramOfTheUsersHasASessionOfItsOwn) {
    const CTestFolder folder;
    const std::string script = "cut -d' ' -f1,6 /proc/$$/stat >'" + (folder / "ids") + "'";
    CResult<CStartedProgram> started = StartProgram({"sh", {"-c", script}, {}});
    ASSERT_TRUE(started);
    EXPECT_EQ(started.Value().WaitForEnd(20s), 0);
    const std::string ids = CTestFolder::TextOf(folder / "ids");
    EXPECT_EQ(ids.substr(0, ids.find(' ')) + "\n", ids.substr(ids.find(' ') + 1));
}

}  // namespace
