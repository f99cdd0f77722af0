// SPDX-License-Identifier: MIT
#include "programs/orbivue/convert.h"

#include <gtest/gtest.h>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "settings/CSettings.h"
#include "settings/CSettingsGuard.h"

namespace {

/** Of the settings a conversion takes the lighting, and nothing else. */
TEST(ConvertTest, TakesTheLightingOfTheSettings) {
    const CSettingsGuard guard;
    const CTestFolder folder;
    const std::wstring input =
        file_util_ex::ConvertFromUTF8W(folder.Add("a.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"));
    const auto convert = [&](const char* name) {
        EXPECT_TRUE(ConvertToPov(input, file_util_ex::ConvertFromUTF8W(folder / name)));
        return CTestFolder::TextOf(folder / name);
    };
    CSettings& settings = CSettings::Instance();
    const std::string plain = convert("plain.pov");
    EXPECT_EQ(plain.find("radiosity"), std::string::npos);
    settings.povRadiosity = true;
    const std::string lit = convert("lit.pov");
    EXPECT_NE(lit.find("radiosity"), std::string::npos);
    settings.povDiffuse = 0.25f;
    EXPECT_NE(convert("dim.pov"), lit);
    settings.povDiffuse = CSettings().povDiffuse;
    settings.povOutputTex = false;
    settings.povPreviewBack = true;
    settings.bkColorR = 200;
    EXPECT_EQ(convert("other.pov"), lit);
}

}  // namespace
