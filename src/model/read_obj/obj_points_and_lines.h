// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "base/CResult.h"
#include "model/read_obj/CObjGeometry.h"

/** A 3DS scene holds nothing but triangles, so points and lines become small closed solids: a point an
 * octahedron, a piece of a line a prism of three sides. Beyond 50,000 of them each is a tetrahedron, so that
 * large clouds take half as many triangles. They keep group and material and have no texture.
 *
 * In: a face of one corner is a point, one of two a piece of a line. Out: such faces are gone, those of the
 * solids stand where they stood, and solidPoints, solidLines and crowdedOut are set.
 *
 * - A point is 1/40 of the diagonal of the model's bounds wide, a line 1/150. Where there are so many
 *   that they would merge into a blot they are thinner: points by the root of their number, lines by
 *   their length in all.
 * - A point or piece of a line that is there twice is drawn once. One that faces have as a corner or an edge
 *   is not drawn: some exporters write all edges beside the faces. What counts is the place, not the index.
 * - Where the solids have more than trianglesLeft triangles they are left out if the file has other faces;
 *   else the file is TooLarge. */
[[nodiscard]] CStatus MakePointsAndLinesSolid(CObjGeometry& geometry, std::size_t trianglesLeft);
