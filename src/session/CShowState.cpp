// SPDX-License-Identifier: MIT
#include "session/CShowState.h"

#include "settings/CSettings.h"

CShowState CShowState::From(const CSettings& settings) {
    const auto channel = [](unsigned value) { return static_cast<float>(value) / 255.0f; };
    return {
        .wire = settings.wireFrame,
        .rotate = settings.rotate,
        .bounds = settings.showBounds,
        .cameras = settings.showCameras,
        .lights = settings.showLights,
        .axes = settings.showAxis,
        .background = {channel(settings.bkColorR), channel(settings.bkColorG), channel(settings.bkColorB)}};
}
