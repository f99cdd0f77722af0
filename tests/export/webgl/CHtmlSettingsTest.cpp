// SPDX-License-Identifier: MIT
#include "export/webgl/CHtmlSettings.h"

#include <gtest/gtest.h>

#include "files/CTestFolder.h"

namespace {

using CFlags = std::array<bool, 7>;

CFlags FlagsOf(const CHtmlSettings& s) {
    return {s.GetMinify(),       s.GetCombine(),    s.GetLaunchBrowser(), s.GetGzip(),
            s.GetDownloadLink(), s.GetCamerasBar(), s.GetDoubleSided()};
}
constexpr CFlags kDefaults{true, true, true, true, true, true, false};

TEST(CHtmlSettingsTest, WithoutAFileAllButOneAreOnAndNothingIsWritten) {
    const CTestFolder folder;
    const CHtmlSettings settings(folder / "html_settings.ini");
    EXPECT_EQ(FlagsOf(settings), kDefaults);
    EXPECT_EQ(settings.GetJavaScript(), "");
    EXPECT_EQ(folder.Count(), 0u);
}

TEST(CHtmlSettingsTest, TakesFromTheFileWhatItHas) {
    const CTestFolder folder;
    (void)folder.Add("h.ini", "[html]\nminify = 0\nbrowser = no\nmat_double_sided = 5\n[other]\ngzip = 0\n");
    EXPECT_EQ(FlagsOf(CHtmlSettings(folder / "h.ini")), (CFlags{false, true, true, true, true, true, true}));
}

TEST(CHtmlSettingsTest, KeepsEveryValueAndWhatOthersHaveWritten) {
    const CTestFolder folder;
    const std::string script = "// \xC3\xA4\xE2\x82\xAC \"quoted\"; = [html]\r\n\tx = '\\n';\n\n  ";
    (void)folder.Add("h.ini", "[html]\nnew_key = 7\n");
    {
        CHtmlSettings settings(folder / "h.ini");
        settings.SetMinify(false);
        settings.SetCombine(false);
        settings.SetGzip(false);
        settings.SetDoubleSided(true);
        settings.SetJavaScript(script);
        EXPECT_TRUE(settings.Save());
    }
    const CHtmlSettings settings(folder / "h.ini");
    EXPECT_EQ(FlagsOf(settings), (CFlags{false, false, true, false, true, true, true}));
    EXPECT_EQ(settings.GetJavaScript(), script);
    const std::string text = CTestFolder::TextOf(folder / "h.ini");
    for (const char* line : {"minify=0", "browser=1", "cameras_bar=1", "new_key=7"})
        EXPECT_NE(text.find(line), std::string::npos) << text;
}

}  // namespace
