// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "base/math/CVec.h"
#include "camera/CSeenOptions.h"
#include "engine/overlay/overlays.h"

/** How a picture of a scene is drawn, as the options of a command line say. */
struct CPictureOptions {
    int width = 1024;
    int height = 768;
    std::size_t scene = 0;  ///< of a scene script, from 0 on
    std::optional<std::string>
        camera;  ///< see C3dsDisplayWrap::SetCameraOfName; when not given, the scene's, or iso
    CSeenOptions seen;
    std::optional<float> frame;             ///< the file's current frame when not given
    CVec3 background{0.24f, 0.26f, 0.30f};  ///< where a scene says nothing
    std::optional<int> samples;             ///< when not given, chosen by the size of the scene
    std::optional<int>
        textureMode;  ///< see C3dsDisplayWrap::SetTextureRenderMode; when not given, the scene's, or 0
    COverlays overlays;
    bool wire = false;
    bool fileLights = true;
};

constexpr int kMaxPictureSide = 16384;
