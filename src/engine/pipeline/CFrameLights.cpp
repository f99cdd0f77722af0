// SPDX-License-Identifier: MIT
#include "engine/pipeline/CFrameLights.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "engine/pipeline/CFrameView.h"
#include "model/prepare/CPreparedScene.h"

namespace {

float Strength(const CFrameLight& light) {
    return std::abs(light.color.x) + std::abs(light.color.y) + std::abs(light.color.z);
}

float CosOfHalf(float coneDeg) {
    const float half = std::clamp(coneDeg, 0.0f, 360.0f) * 0.5f;
    return std::cos(half * std::numbers::pi_v<float> / 180);
}

/** The factor by which the model-view matrix enlarges the scene; it also scales the ranges of lights. */
float Enlargement(const CFrameView& view) {
    return static_cast<float>(std::cbrt(std::abs(view.modelView.Determinant3())));
}

CFrameLight ToFrame(const CPreparedLight& source, const CFrameView& view) {
    CFrameLight light;
    light.position = view.ToEye(source.position);
    light.color = source.color * source.multiplier;
    light.spot = source.spot;
    if (source.spot) {
        light.direction = Normalized(view.ToEye(source.target) - light.position);
        light.cosOuter = CosOfHalf(source.falloffDeg);
        // Equal angles would divide by zero; this is a hard edge.
        light.cosInner = std::max(CosOfHalf(source.hotspotDeg), light.cosOuter + 1e-4f);
    }
    if (source.attenuate) {
        const float scale = Enlargement(view);
        light.innerRange = source.innerRange * scale;
        light.outerRange =
            std::max(source.outerRange * scale, light.innerRange + 1e-6f * (1 + light.innerRange));
    }
    return light;
}

/** The eye is the origin; without one the light comes from far away. */
CFrameLight JoinedHeadlight(const CFrameView& view) {
    constexpr float kFar = 1e12f;
    CFrameLight light;
    if (!view.perspective) light.position = CVec3{view.viewer[0], view.viewer[1], view.viewer[2]} * kFar;
    light.color = {1, 1, 1};
    return light;
}

}  // namespace

CFrameLights CFrameLights::From(const CPreparedScene& scene, const CFrameView& view, bool useFileLights) {
    CFrameLights result;
    result.ambient = scene.ambientLight;
    if (!useFileLights) return result;
    for (const CPreparedLight& light : scene.lights) {
        if (!light.off) result.lights.push_back(ToFrame(light, view));
    }
    const bool joins = scene.headlightJoins && !result.lights.empty();
    const std::size_t most = kMaxLights - (joins ? 1 : 0);
    if (result.lights.size() > most) {
        std::stable_sort(
            result.lights.begin(), result.lights.end(),
            [](const CFrameLight& a, const CFrameLight& b) { return Strength(a) > Strength(b); });
        result.lights.resize(most);
    }
    if (joins) result.lights.push_back(JoinedHeadlight(view));
    for (const CFrameLight& light : result.lights) {
        result.anySpot = result.anySpot || light.spot;
        result.anyRange = result.anyRange || light.innerRange < 1e30f;
    }
    return result;
}
