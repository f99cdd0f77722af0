// SPDX-License-Identifier: MIT
#include "export/pov/pov_lights.h"

#include <algorithm>
#include <cmath>

#include "export/pov/CPovMaterials.h"
#include "export/pov/text/CPovText.h"
#include "model/prepare/CPreparedScene.h"

namespace {

/** A cone that is as wide as this shines everywhere, and POV-Ray takes none wider. */
constexpr float kWidestConeDeg = 179.9f;

void WriteSpot(CPovText& text, const CPreparedLight& light, const CMat4& place) {
    const bool aims = Length(light.target - light.position) > 0;
    const CVec3 target = aims ? light.target : light.position + CVec3{0, 0, -1};
    const float falloff = std::clamp(light.falloffDeg, 0.02f, kWidestConeDeg);
    // Equal angles would divide by zero; this is a hard edge.
    const float hotspot = std::clamp(light.hotspotDeg, 0.01f, falloff - 0.005f);
    text << " spotlight point_at" << place.TransformPoint(target) << " radius " << hotspot / 2 << " falloff "
         << falloff / 2 << " tightness 0";
}

/** The view's light falls off straight from the inner to the outer range. POV-Ray's 2 / (1 + (d/f)^p) has the
 * same middle and slope there when its 2 is taken back. Ranges grow as the volume does, as in the view. */
void WriteRange(CPovText& text, const CPreparedLight& light, const CMat4& place) {
    const float scale = static_cast<float>(std::cbrt(std::abs(place.Determinant3())));
    const float middle = (light.innerRange + light.outerRange) / 2;
    const float width = std::max(light.outerRange - light.innerRange, middle * 1e-3f);
    text << " fade_distance " << middle * scale << " fade_power " << 4 * middle / width;
}

void WriteLight(CPovText& text, const CPreparedLight& light, const CMat4& place) {
    const bool fades = light.attenuate && light.outerRange > 0 && light.innerRange >= 0;
    const float gain = light.multiplier * CPovMaterials::kLightGain * (fades ? 0.5f : 1.0f);
    text << "// " << pov_text::CommentText(light.name) << '\n';
    text << "light_source{" << place.TransformPoint(light.position) << " rgb" << light.color * gain;
    if (light.spot && light.hotspotDeg < kWidestConeDeg) WriteSpot(text, light, place);
    if (fades) WriteRange(text, light, place);
    text << "}\n";
}

}  // namespace

bool HasPovLights(const CPreparedScene& scene, bool useFileLights) {
    return useFileLights && std::any_of(scene.lights.begin(), scene.lights.end(),
                                        [](const CPreparedLight& light) { return !light.off; });
}

void WritePovLights(CPovText& text, const CPreparedScene& scene, bool useFileLights, const CMat4& place) {
    const bool byFile = HasPovLights(scene, useFileLights);
    if (!byFile || scene.headlightJoins) text << "light_source{Eye rgb 1/.6}\n";
    if (!byFile) return;
    for (const CPreparedLight& light : scene.lights) {
        if (!light.off) WriteLight(text, light, place);
    }
}
