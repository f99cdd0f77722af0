// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>

#include "export/pov/pov_export_format.h"
#include "export/pov/pov_settings.h"
#include "row_name.h"
#include "settings/CSettings.h"

namespace {

struct CAnglesCase {
    const char* name;
    const char* camera;
    std::array<float, 3> view, exported;
};
class PovAnglesTest : public testing::TestWithParam<CAnglesCase> {};

TEST_P(PovAnglesTest, AreTurnedRoundForTheExporter) {
    const auto& [name, camera, view, exported] = GetParam();
    C3ds2Pov::COutFormat format;
    pov_export_format::SetAngles(format, camera, view[0], view[1], view[2]);
    EXPECT_EQ((std::array{format.angleX, format.angleY, format.angleZ}), exported);
}

INSTANTIATE_TEST_SUITE_P(Cameras, PovAnglesTest,
                         testing::Values(CAnglesCase{"Top", "top_cam", {10, 20, 30}, {20, -10, -120}},
                                         CAnglesCase{"Iso", "iso_cam", {10, 20, 30}, {-10, 20, -30}},
                                         CAnglesCase{"AlmostTop", "top_cam2", {10, 20, 30}, {-10, 20, -30}},
                                         CAnglesCase{"NoName", "", {-10, -20, -30}, {10, -20, 30}},
                                         CAnglesCase{"TopNotTurned", "top_cam", {0, 0, 0}, {0, 0, -90}}),
                         kRowName);

TEST(PovExportFormatTest, TakesWhatTheSettingsSay) {
    CSettings settings;
    settings.povOutputTex = false;
    settings.povRadiosity = true;
    settings.povDiffuse = 0.25F;
    settings.povSelfDiff = 0.75F;
    for (const bool preview : {false, true}) {
        settings.povPreviewBack = preview;
        C3ds2Pov::COutFormat format =
            pov_export_format::Make(settings, "Camera01", {0.1F, 0.2F, 0.3F}, {0.4F, 0.5F, 0.6F});
        EXPECT_EQ(format.cameraName, "Camera01");
        EXPECT_FALSE(format.outputTextures);
        EXPECT_EQ((std::array{format.bkRed, format.bkGreen, format.bkBlue}),
                  preview ? (std::array{0.1F, 0.2F, 0.3F}) : (std::array{0.4F, 0.5F, 0.6F}));
        pov_export_format::SetLighting(format, settings);
        EXPECT_TRUE(format.radiosity);
        EXPECT_EQ(format.diffuse, 0.25F);
        EXPECT_EQ(format.selfDiffuse, 0.75F);
        EXPECT_EQ(format.mode, 3);
    }
}

TEST(PovExportFormatTest, TakesTheLastNameOnlyWhereThereIsOne) {
    CSettings settings;
    settings.povLastName = L"/tmp/last.pov";
    EXPECT_FALSE(pov_export_format::TakesLastName(settings));
    settings.povUseLastName = true;
    EXPECT_TRUE(pov_export_format::TakesLastName(settings));
    settings.povLastName.clear();
    EXPECT_FALSE(pov_export_format::TakesLastName(settings));
}

TEST(PovSettingsTest, FieldsGoThereAndBack) {
    EXPECT_EQ(pov_settings::ToFields(CSettings()),
              (CPovSettings{.diffuse = "0.600", .selfDiffuse = "0.100"}));
    const CPovSettings fields{.outputTextures = false,
                              .useLastName = true,
                              .radiosity = true,
                              .previewBackground = true,
                              .diffuse = "0.125",
                              .selfDiffuse = "1.000"};
    CSettings settings;
    ASSERT_TRUE(pov_settings::FromFields(fields, settings));
    EXPECT_EQ(pov_settings::ToFields(settings), fields);
    EXPECT_EQ(settings.povDiffuse, 0.125F);
}

TEST(PovSettingsTest, AWrongNumberStoresNothing) {
    for (const auto& [diffuse, selfDiffuse] :
         {std::pair{"", "0.5"}, {"0.5", ""}, {"0.5", "1.5"}, {"-1", "0.5"}}) {
        CSettings settings;
        const CPovSettings fields{.radiosity = true, .diffuse = diffuse, .selfDiffuse = selfDiffuse};
        const CStatus stored = pov_settings::FromFields(fields, settings);
        ASSERT_FALSE(stored) << diffuse << " and " << selfDiffuse;
        EXPECT_EQ(stored.Error().code, EErrorCode::BadArgument);
        EXPECT_EQ(settings, CSettings());
    }
}

}  // namespace
