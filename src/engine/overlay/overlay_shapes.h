// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "base/math/CBox.h"

struct CPreparedCamera;
struct CPreparedLight;

/** What overlays are made of: pairs of points, each a line. Pure arithmetic. */
namespace overlay_shapes {

using CLines = std::vector<CVec3>;

/** The twelve edges. */
[[nodiscard]] CLines BoxEdges(const CBox& box);
/** A body with a viewfinder, the pyramid of what a picture of 4:3 sees out to the target, and
 * the line of sight. */
[[nodiscard]] CLines Camera(const CPreparedCamera& camera, float size);
/** A star of six rays with a diamond about it. */
[[nodiscard]] CLines Omni(const CPreparedLight& light, float size);
/** The cone to the target: circles of full and of ending light, four edges, and the line to the target. */
[[nodiscard]] CLines Spot(const CPreparedLight& light, float size);
/** The strokes of X, Y or Z in a square of the given size round a point, upright as the given axes see it. */
[[nodiscard]] CLines Letter(char letter, CVec3 middle, CVec3 right, CVec3 up, float size);

/** A unit vector square to the given one, and so for one without length. */
[[nodiscard]] CVec3 AnySquareTo(CVec3 direction);

}  // namespace overlay_shapes
