// SPDX-License-Identifier: MIT
#include "export/pov/pov_export_format.h"

#include <gtest/gtest.h>

#include <array>

#include "base/math/rotation_of_angles.h"
#include "engine/test_scenes.h"
#include "export/pov/CPovCamera.h"
#include "export/pov/pov_hand_over.h"
#include "export/pov/pov_settings.h"
#include "row_name.h"
#include "settings/CSettings.h"

namespace {

struct CAnglesCase {
    const char* name;
    const char* camera;
    CVec3 view, record;
};
class PovAnglesTest : public testing::TestWithParam<CAnglesCase> {};

// Walking round the model shows what turning the model before the camera shows.
TEST_P(PovAnglesTest, StandForTheTurnedModel) {
    const auto& [name, camera, view, record] = GetParam();
    test_scenes::CBuilder builder;
    builder.Add(test_scenes::MakeCube(), {});
    C3ds2Pov::COutFormat format;
    format.cameraName = camera;
    const auto eyeFor = [&](CVec3 angles) {
        pov_export_format::SetAngles(format, format.cameraName, angles.x, angles.y, angles.z);
        return CPovCamera(pov_export_format::SeenViewOf(builder.Scene(), format)).Eye();
    };
    const CVec3 straight = eyeFor({}), turned = eyeFor(view);
    EXPECT_EQ((CVec3{format.angleX, format.angleY, format.angleZ}), record);
    const CVec3 seen = RotationOfAngles(view.x, view.y, view.z).TransformPoint(turned);
    EXPECT_LT(Length(seen - straight), 1e-4f * Length(straight));
}
const CAnglesCase kAngles[] = {{"Top", "top_cam", {10, 20, 30}, {20, -10, -120}},
                               {"Iso", "iso_cam", {10, 20, 30}, {-10, 20, -30}},
                               {"AlmostTop", "top_cam2", {10, 20, 30}, {-10, 20, -30}},
                               {"NoName", "", {-10, -20, -30}, {10, -20, 30}}};
INSTANTIATE_TEST_SUITE_P(Cameras, PovAnglesTest, testing::ValuesIn(kAngles), kRowName);

TEST(PovExportFormatTest, TakesWhatTheSettingsSay) {
    CSettings settings;
    settings.povOutputTex = false;
    settings.povRadiosity = true;
    settings.povDiffuse = 0.25F;
    settings.povSelfDiff = 0.75F;
    for (const bool preview : {false, true}) {
        settings.povPreviewBack = preview;
        auto format = pov_export_format::Make(settings, "Camera01", {0.1F, 0.2F, 0.3F}, {0.4F, 0.5F, 0.6F});
        EXPECT_FALSE(format.outputTextures);
        EXPECT_EQ((std::array{format.bkRed, format.bkGreen, format.bkBlue}),
                  preview ? (std::array{0.1F, 0.2F, 0.3F}) : (std::array{0.4F, 0.5F, 0.6F}));
        pov_export_format::SetLighting(format, settings);
        EXPECT_TRUE(format.radiosity);
        EXPECT_EQ(std::pair(format.diffuse, format.selfDiffuse), std::pair(0.25F, 0.75F));
    }
    settings.povUseLastName = true;
    EXPECT_FALSE(pov_export_format::TakesLastName(settings)) << "there is none";
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

TEST(PovHandOverTest, TellsWhatIsMissing) {
    using pov_hand_over::WhyNot;
    const std::wstring download =
        L"Unable to find POV-RAY executable. Please download POV-RAY from the: https://";
    EXPECT_TRUE(WhyNot({.povRay = false, .opener = false}).starts_with(download));
    EXPECT_NE(WhyNot({.povRay = true, .opener = false}).find(L"xdg-utils"), std::wstring::npos);
    EXPECT_NE(WhyNot({.povRay = true, .opener = true}).find(L"not associated"), std::wstring::npos);
}

}  // namespace
