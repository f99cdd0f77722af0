// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "base/math/CSphere.h"

class CGlCurrent;
struct CPreparedScene;

/** Which line drawings are shown over a scene. They use the matrices and the depth buffer of the scene
 * that has just been drawn, so nearer surfaces hide them. They use the fixed pipeline and restore all
 * OpenGL state. */
struct COverlays {
    bool bounds = false;
    bool cameras = false;
    bool lights = false;
    bool axes = false;

    [[nodiscard]] bool Any() const { return bounds || cameras || lights || axes; }
};

/** Draws the chosen ones. Their size follows the scene's bounding sphere, or a unit sphere for a scene
 * without extent. */
void DrawOverlays(const CGlCurrent& gl, const CPreparedScene& scene, const COverlays& overlays);

/** Spheres that hold what DrawOverlays would draw, for the choice of near and far planes. */
[[nodiscard]] std::vector<CSphere> OverlayExtents(const CPreparedScene& scene, const COverlays& overlays);
