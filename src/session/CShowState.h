// SPDX-License-Identifier: MIT
#pragma once

#include "base/math/CVec.h"

struct CSettings;

/** How the view shows whatever model is open, as far as a user or a show switches it. It starts as the
 * settings have it; what a show changes in it is not stored there, what the user switches is. */
struct CShowState {
    bool wire = false;
    bool rotate = false;
    bool bounds = false, cameras = false, lights = false, axes = false;
    CVec3 background;  ///< 0..1

    [[nodiscard]] static CShowState From(const CSettings& settings);
};
