// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/math/CVec.h"

/** Three corners of a polygon, by number; the winding is the polygon's. */
using CTriangle = std::array<std::uint32_t, 3>;

/** Cuts a polygon of at least three corners into corners - 2 triangles and appends them. Quadrangles are
 * cut along the shorter diagonal that lies inside, other polygons by cutting ears in the plane they mostly
 * lie in; one that crosses itself gives triangles that cover it somehow. `budget` is the work still
 * allowed for ears in this file (corner tests): when it is used up, polygons become fans, so a hostile
 * file cannot take long. */
void TriangulatePolygon(std::span<const CVec3> corners, std::size_t& budget,
                        std::vector<CTriangle>& triangles);
