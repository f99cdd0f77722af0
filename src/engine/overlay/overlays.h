// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "base/math/CSphere.h"

class CGlCurrent;
struct CPreparedScene;

/** Line drawings over a scene that has just been drawn: with its matrices, hidden by what stands before them.
 * They use the fixed pipeline and leave all OpenGL state as they found it. */
struct COverlays {
    bool bounds = false;
    bool cameras = false;
    bool lights = false;
    bool axes = false;

    [[nodiscard]] bool Any() const { return bounds || cameras || lights || axes; }
};

/** Draws the chosen ones, sized after the scene's bounding sphere (as a unit sphere when it has no size). */
void DrawOverlays(const CGlCurrent& gl, const CPreparedScene& scene, const COverlays& overlays);

/** Spheres that hold what DrawOverlays would draw, for the choice of near and far planes. */
[[nodiscard]] std::vector<CSphere> OverlayExtents(const CPreparedScene& scene, const COverlays& overlays);
