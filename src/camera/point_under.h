// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "base/math/CVec.h"

struct CPreparedScene;
struct CSeenView;

/** The point of the scene, in its own coordinates, that is seen at a point of the view (pixels, origin top
 * left): where the ray from the eye first meets a triangle that is drawn. Sides that are not shown, hidden
 * nodes and invisible materials let it through; pictures that cut out do not. Nothing where it meets none.
 * seen must belong to the scene. Takes some 10 ms for a million triangles. */
[[nodiscard]] std::optional<CVec3d> PointUnder(const CPreparedScene& scene, const CSeenView& seen, double x,
                                               double y);
