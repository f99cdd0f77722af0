// SPDX-License-Identifier: MIT
#include "export/pov/pov_export_format.h"

#include <cmath>
#include <numbers>

#include "base/math/rotation_of_angles.h"
#include "settings/CSettings.h"

namespace pov_export_format {

C3ds2Pov::COutFormat Make(const CSettings& settings, const std::string& cameraName, const CColor& preview,
                          const CColor& model) {
    C3ds2Pov::COutFormat format;
    format.outputTextures = settings.povOutputTex;
    format.cameraName = cameraName;
    const CColor& background = settings.povPreviewBack ? preview : model;
    format.bkRed = background[0];
    format.bkGreen = background[1];
    format.bkBlue = background[2];
    return format;
}

CAngles WithTrackBall(const CAngles& engine, const std::array<float, 16>& trackBall) {
    const CMat4 turn{trackBall};
    if (turn == CMat4{}) return engine;
    const std::array<float, 16> m = (turn * RotationOfAngles(engine[0], engine[1], engine[2])).m;
    // Rx * Ry * Rz, column by column: m[8] is sin y, m[9] and m[10] are cos y times -sin x and cos x. What is
    // left of the second row when Rx is taken back is sin z, cos z: right also where x and z turn alike.
    const float x = std::atan2(-m[9], m[10]);
    const float y = std::atan2(m[8], std::hypot(m[9], m[10]));
    const float z =
        std::atan2(std::cos(x) * m[1] + std::sin(x) * m[2], std::cos(x) * m[5] + std::sin(x) * m[6]);
    constexpr float kDegrees = 180 / std::numbers::pi_v<float>;
    return {x * kDegrees, y * kDegrees, z * kDegrees};
}

void SetAngles(C3ds2Pov::COutFormat& format, const std::string& cameraName, float x, float y, float z) {
    // The exporter counts on this exchange of the axes for the top camera.
    if (cameraName == "top_cam") {
        format.angleX = y;
        format.angleY = 0.0F - x;
        format.angleZ = -90.0F - z;
    } else {
        format.angleX = 0.0F - x;
        format.angleY = y;
        format.angleZ = 0.0F - z;
    }
}

void SetLighting(C3ds2Pov::COutFormat& format, const CSettings& settings) {
    format.radiosity = settings.povRadiosity;
    format.diffuse = settings.povDiffuse;
    format.selfDiffuse = settings.povSelfDiff;
}

bool TakesLastName(const CSettings& settings) {
    return settings.povUseLastName && !settings.povLastName.empty();
}

}  // namespace pov_export_format
