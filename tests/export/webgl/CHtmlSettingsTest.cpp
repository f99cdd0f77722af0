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
