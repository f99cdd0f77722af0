// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "base/math/CBox.h"

struct CPreparedCamera;
struct CPreparedLight;

/** The lines of overlays: each pair of points is one line. Sizes are in the scene's units.
 * Pure arithmetic. */
namespace overlay_shapes {

using CLines = std::vector<CVec3>;

/** The twelve edges. */
[[nodiscard]] CLines BoxEdges(const CBox& box);
/** A camera body with a viewfinder, the pyramid that a 4:3 picture sees as far as the target, and the line
 * of sight. */
[[nodiscard]] CLines Camera(const CPreparedCamera& camera, float size);
/** A star of six rays with a diamond about it. */
[[nodiscard]] CLines Omni(const CPreparedLight& light, float size);
/** The cone to the target: the circles of hotspot and falloff, four edges, and the line to the target. */
[[nodiscard]] CLines Spot(const CPreparedLight& light, float size);
/** The strokes of X, Y or Z in a square of the given size round a point, upright as the given axes see it. */
[[nodiscard]] CLines Letter(char letter, CVec3 middle, CVec3 right, CVec3 up, float size);

/** A unit vector at right angles to direction; any unit vector if direction has no length. */
[[nodiscard]] CVec3 AnySquareTo(CVec3 direction);

}  // namespace overlay_shapes
