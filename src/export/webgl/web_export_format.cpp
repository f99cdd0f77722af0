// SPDX-License-Identifier: MIT
#include "export/webgl/web_export_format.h"

#include "camera/framing.h"
#include "export/webgl/CHtmlSettings.h"
#include "files/file_util_ex.h"
#include "model/prepare/CPreparedScene.h"

namespace web_export_format {

C3ds2WebGL::COutFormat Make(const CHtmlSettings& settings, const CSeenView& seen,
                            const std::wstring& modelFileName) {
    return {.minify = settings.GetMinify(),
            .combine = settings.GetCombine(),
            .gzip = settings.GetGzip(),
            .displayFlag = seen.wire,
            .downloadLink = settings.GetDownloadLink(),
            .camerasBar = settings.GetCamerasBar(),
            .doubleSided = settings.GetDoubleSided(),
            .bkRed = seen.background.x,
            .bkGreen = seen.background.y,
            .bkBlue = seen.background.z,
            .cameraName = seen.camera.Name(),
            .modelFileName = file_util_ex::ConvertToUTF8(modelFileName),
            .version = ORBIVUE_VERSION,
            .javaScript = settings.GetJavaScript()};
}

CSeenView SeenViewOf(const CPreparedScene& scene, const C3ds2WebGL::COutFormat& format) {
    CSeenView seen;
    seen.camera.SetModel(FramingSphere(scene));
    ChooseCamera(seen.camera, scene, format.cameraName);
    seen.background = {format.bkRed, format.bkGreen, format.bkBlue};
    seen.wire = format.displayFlag;
    seen.frame = scene.currentFrame;
    return seen;
}

}  // namespace web_export_format
