// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdlib>
#include <optional>

#include "files/CTestFolder.h"
#include "files/std_file_paths.h"
#include "row_name.h"

namespace fs = std::filesystem;
namespace paths = std_file_paths;

namespace {

// Sets a variable of the environment, and at the end what it was.
class CVariable {
  public:
    CVariable(const char* name, const std::string& value) : m_name(name) {
        if (const char* before = std::getenv(name)) m_before = before;
        ::setenv(name, value.c_str(), 1);
    }
    ~CVariable() {
        ::unsetenv(m_name);
        if (m_before) ::setenv(m_name, m_before->c_str(), 1);
    }

  private:
    const char* m_name;
    std::optional<std::string> m_before;
};

}  // namespace

TEST(StdFilePathsTest, SettingsLieInThePrivateConfigFolderNamedAfterTheApp) {
    const CTestFolder folder;
    const CVariable home("HOME", folder.Path());
    const CVariable config("XDG_CONFIG_HOME", folder / "config");
    EXPECT_EQ(paths::GetIniFilePath("settings.ini"), folder / "config/orbivue/settings.ini");
    EXPECT_EQ(folder.Count(), 0U);                            // reading settings leaves nothing behind
    const CVariable relative("XDG_CONFIG_HOME", "relative");  // does not count
    EXPECT_EQ(paths::GetIniFilePath(L"a.ini"), fs::path(folder / ".config/orbivue/a.ini").wstring());
    const CVariable cache("XDG_CACHE_HOME", folder.Path());
    paths::SetAppName(L"Other/../App");
    EXPECT_EQ(paths::GetCacheFolderPath(), folder / "other..app");
    paths::SetAppName("Orbivue");
    EXPECT_EQ(paths::GetCacheFolderPath(), folder / "orbivue");
    EXPECT_EQ(fs::status(folder / "orbivue").permissions(), fs::perms(0700));
}

TEST(StdFilePathsTest, TheTemporaryFolderIsPrivateAndMadeAnewAfterItsDeletion) {
    const CTestFolder folder;
    const CVariable temp("TMPDIR", folder.Path());
    paths::DeleteTempDir();
    EXPECT_EQ(folder.Count(), 0U);
    const std::string first = paths::GetTempDir();
    EXPECT_EQ(first, paths::GetTempDir());
    EXPECT_TRUE(first.starts_with(folder / "orbivue-"));
    EXPECT_EQ(fs::status(first).permissions(), fs::perms(0700));
    std::ofstream(paths::GetTempFilePath("inside")) << "x";
    paths::DeleteTempDir();
    EXPECT_EQ(folder.Count(), 0U);
    EXPECT_TRUE(fs::is_directory(paths::GetTempDir()));
    paths::DeleteTempDir();
}

struct CBrowserCase {
    const char* name;
    const char* script;  // of the desktop's opener; null for none
    const char* address;
    const char* error;  // empty: it opens
};
class LaunchBrowserTest : public testing::TestWithParam<CBrowserCase> {};

TEST_P(LaunchBrowserTest, TellsWhatTheOpenerSays) {
    const CTestFolder folder;
    const CVariable path("PATH", folder.Path());
    if (GetParam().script != nullptr) {
        const std::string opener = folder.Add("xdg-open", GetParam().script);
        fs::permissions(opener, fs::perms::owner_all);
    }
    const CStatus opened = paths::LaunchBrowser(GetParam().address);
    EXPECT_EQ(opened ? "" : opened.Error().Text(), GetParam().error);
}

const CBrowserCase kOpeners[] = {
    {"Opens", "#!/bin/sh\n[ \"$1\" = 'http://a/?b&c d' ]\n", "http://a/?b&c d", ""},
    {"Path", "#!/bin/sh\n[ \"$1$PWD\" = '/usr/bin/usr' ]\n", "/usr/./bin", ""},
    {"NoOption", "#!/bin/sh\n[ \"${1%/--help}\" != \"$1\" ]\n", "--help", ""},
    {"OpenerFails", "#!/bin/sh\nexit 3\n", "http://a",
     "http://a: the desktop has no program that opens this"},
    {"NoFile", "#!/bin/sh\nexit 2\n", "/a/b", "/a/b: there is no such file or folder"},
    {"NoOpener", nullptr, "http://a", "xdg-open: this program is not installed"},
    {"OpenerStays", "#!/bin/sh\nexec /bin/sleep 2 >/dev/null 2>&1\n", "http://a", ""},
};
INSTANTIATE_TEST_SUITE_P(Openers, LaunchBrowserTest, testing::ValuesIn(kOpeners), kRowName);
