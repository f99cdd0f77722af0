// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>

#include "files/CTestFolder.h"
#include "row_name.h"
#include "settings/CLocalRegStore.h"
#include "settings/CSettings.h"
#include "settings/CSettingsGuard.h"

namespace {

// Gives each test a settings folder, a store and settings of its own.
class SettingsTest : public testing::Test {
  protected:
    SettingsTest() { ::setenv("XDG_CONFIG_HOME", m_folder.Path().c_str(), 1); }

    void Put(const std::string& lines) {
        std::filesystem::create_directories(m_folder / "orbivue");
        m_folder.Add("orbivue/settings.ini", "[Settings]\n" + lines);
        EXPECT_TRUE(CSettings::LoadFile());
    }
    [[nodiscard]] std::string File() const { return CTestFolder::TextOf(m_folder / "orbivue/settings.ini"); }

    CTestFolder m_folder;
    CLocalRegStore::CDefaultFileGuard m_store;
    CSettingsGuard m_guard;
    CSettings& m_settings = CSettings::Instance();
};

constexpr const char* kDefaultFile =
    "[Settings]\nLanguage=en\nRotate=0\nBounds=0\nCameras=0\nLights=0\nAxis=0\nLastCamera=32776\n"
    "ShowToolBar=1\nShowModelList=0\nWire=0\nBkColorR=0\nBkColorG=0\nBkColorB=0\nPovOutputTex="
    "1\nPovPreviewBack=0\n"
    "PovUseLastName=0\nPovRadiosity=0\nPovLastName=\nPovDiffuse=0.600\nPovSelfDiff=0.100\nAutoUpdate=1\n"
    "CloseOnEsc=0\nShowMaterialBar=1\nSlideShowTime=3000\n"
    "ModelServer=\nModelServerToken=\n"
    "UpdateFeed=\nUpdateLastCheck=\nUpdateSkippedVersion=\n";

}  // namespace

TEST_F(SettingsTest, WithoutAFileAllDefaultsAreInForceAndAreWrittenInOrder) {
    EXPECT_FALSE(CSettings::LoadFile());
    m_settings.ReadAll();
    EXPECT_EQ(m_settings, CSettings());
    EXPECT_TRUE(m_settings.WriteAll());
    EXPECT_EQ(File(), kDefaultFile);
}

TEST_F(SettingsTest, KeysThatAFileLacksAreWrittenInOrder) {
    Put("");
    EXPECT_TRUE(m_settings.WriteAll());
    EXPECT_EQ(File(), kDefaultFile);
}

TEST_F(SettingsTest, AFileWithATokenIsTheUsersAlone) {
    using std::filesystem::perms;
    const auto readers = [&] {
        return std::filesystem::status(m_folder / "orbivue/settings.ini").permissions() &
               (perms::group_all | perms::others_all);
    };
    Put("ModelServerToken=\n");
    EXPECT_NE(readers(), perms::none);
    Put("ModelServerToken=secret\n");
    EXPECT_EQ(readers(), perms::none);
    m_settings.ReadAll();
    std::filesystem::permissions(m_folder / "orbivue/settings.ini", perms::owner_all | perms::others_read);
    EXPECT_TRUE(m_settings.WriteAll());
    EXPECT_EQ(readers(), perms::none);
}

TEST_F(SettingsTest, EveryFieldComesBack) {
    Put("");
    CSettings changed;
    for (bool CSettings::*field :
         {&CSettings::showCameras, &CSettings::showLights, &CSettings::showAxis, &CSettings::rotate,
          &CSettings::showToolBar, &CSettings::showBounds, &CSettings::wireFrame, &CSettings::povOutputTex,
          &CSettings::povPreviewBack, &CSettings::povUseLastName, &CSettings::povRadiosity,
          &CSettings::autoUpdate, &CSettings::closeOnEsc})
        changed.*field = !(changed.*field);
    changed.language = L"ру";
    changed.lastCamera = -7;
    changed.bkColorR = 255;
    changed.bkColorG = 128;
    changed.bkColorB = 1;
    changed.slideShowTime = 12345;
    changed.povLastName = L" /m/\"a\"; b\n.pov";
    changed.povDiffuse = 0.125F;
    changed.povSelfDiff = -2.5F;
    m_settings = changed;
    ASSERT_TRUE(m_settings.WriteAll());
    m_settings = CSettings();
    ASSERT_TRUE(CSettings::LoadFile());
    m_settings.ReadAll();
    EXPECT_EQ(m_settings, changed) << File();
}

TEST_F(SettingsTest, AMissingKeyKeepsTheFieldExceptCameraColourAndFactors) {
    Put("Wire=1\n");
    m_settings.language = L"de";
    m_settings.rotate = true;
    m_settings.povLastName = L"x";
    CSettings expected = m_settings;
    expected.wireFrame = true;
    m_settings.lastCamera = 1;
    m_settings.bkColorR = m_settings.bkColorG = m_settings.bkColorB = 9;
    m_settings.povDiffuse = m_settings.povSelfDiff = 5;
    m_settings.ReadAll();
    EXPECT_EQ(m_settings, expected);
}

struct COddValue {
    const char* name;
    const char *line, *written;
};
class SettingsOddValueTest : public SettingsTest, public testing::WithParamInterface<COddValue> {};

TEST_P(SettingsOddValueTest, IsReadByRuleAndWrittenClean) {
    Put(GetParam().line);
    m_settings.ReadAll();
    ASSERT_TRUE(m_settings.WriteAll());
    EXPECT_NE(File().find(std::string("\n") + GetParam().written + "\n"), std::string::npos) << File();
}

const COddValue kOddValues[] = {
    {"ColourCutTo8Bits", "BkColorR=300", "BkColorR=44"},
    {"NegativeColour", "BkColorG=-1", "BkColorG=255"},
    {"FactorEmpty", "PovDiffuse=", "PovDiffuse=0.000"},
    {"FactorNan", "PovSelfDiff=nan", "PovSelfDiff=0.000"},
    {"FactorThenText", "PovSelfDiff=1.5x", "PovSelfDiff=1.500"},
    {"FactorHuge", "PovDiffuse=1e99", "PovDiffuse=340282346638528859811704183484516925440.000"},
    {"BoolAnyNumber", "ShowToolBar=5", "ShowToolBar=1"},
    {"BoolNotANumber", "ShowToolBar=no", "ShowToolBar=1"},
    {"CameraNotANumber", "LastCamera=iso", "LastCamera=32776"},
};
INSTANTIATE_TEST_SUITE_P(Values, SettingsOddValueTest, testing::ValuesIn(kOddValues), kRowName);

TEST_F(SettingsTest, OtherSectionsStayAndAValueThatCannotBeWrittenIsTold) {
    Put("Wire=1\n[3dsFileDialog]\nPath=/models\n");
    m_settings.ReadAll();
    ASSERT_TRUE(m_settings.WriteAll());
    EXPECT_NE(File().find("[3dsFileDialog]\nPath=/models\n"), std::string::npos) << File();
    const std::string before = File();
    m_settings.povLastName = std::wstring(1, L'\0');
    EXPECT_FALSE(m_settings.WriteAll());
    EXPECT_EQ(File(), before);
}
