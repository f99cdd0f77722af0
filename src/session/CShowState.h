// SPDX-License-Identifier: MIT
#pragma once

#include "base/math/CVec.h"

struct CSettings;

/** How the view shows the open model, as far as a user or a show can switch it. It starts with the values of
 * the settings. The user's changes are stored in the settings; those of a show are not. */
struct CShowState {
    bool wire = false;
    bool rotate = false;
    bool bounds = false, cameras = false, lights = false, axes = false;
    CVec3 background;  ///< 0..1

    [[nodiscard]] static CShowState From(const CSettings& settings);
};
