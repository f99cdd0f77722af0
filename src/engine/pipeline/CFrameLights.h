// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "base/math/CVec.h"

struct CFrameView;
struct CPreparedScene;

/** One light as the pipelines take it, in eye-relative space. */
struct CFrameLight {
    CVec3 position;
    CVec3 direction;  ///< of a spot, of unit length
    CVec3 color;      ///< multiplier included
    bool spot = false;
    float cosInner = -2;       ///< of half the hotspot; always above cosOuter
    float cosOuter = -3;       ///< of half the falloff; below -1 for a light that is no spot
    float innerRange = 1e30f;  ///< full light up to here, none beyond outerRange
    float outerRange = 2e30f;
};

/** The lights of one drawing of the view: those of the file that are switched on, at most the kMaxLights
 * strongest, joined by the headlight where these leave the scene in the dark; or one white headlight at the eye
 * when there are none or useFileLights is false. The file's ambient light always counts. */
struct CFrameLights {
    static constexpr std::size_t kMaxLights = 8;

    std::vector<CFrameLight> lights;  ///< empty: the headlight
    bool anySpot = false;
    bool anyRange = false;
    CVec3 ambient;

    [[nodiscard]] bool Headlight() const { return lights.empty(); }
    [[nodiscard]] static CFrameLights From(const CPreparedScene& scene, const CFrameView& view,
                                           bool useFileLights);
};
