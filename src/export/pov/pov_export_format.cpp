// SPDX-License-Identifier: MIT
#include "export/pov/pov_export_format.h"

#include "camera/framing.h"
#include "model/prepare/CPreparedScene.h"
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

void SetAngles(C3ds2Pov::COutFormat& format, const std::string& cameraName, float x, float y, float z) {
    // SeenViewOf reverses this exchange of axes for the top camera.
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

CSeenView SeenViewOf(const CPreparedScene& scene, const C3ds2Pov::COutFormat& format) {
    CSeenView seen;
    const bool fromTop = format.cameraName == NameOfPreset(ECameraPreset::Top);
    seen.rotX = fromTop ? -format.angleY : -format.angleX;
    seen.rotY = fromTop ? format.angleX : format.angleY;
    seen.rotZ = fromTop ? -90 - format.angleZ : -format.angleZ;
    seen.camera.SetModel(FramingSphere(scene));
    ChooseCamera(seen.camera, scene, format.cameraName);
    return seen;
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
