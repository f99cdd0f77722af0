// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "model/read_obj/CObjMeshBuilder.h"

/** Where the smoothing groups of an OBJ file come from. */
enum class EObjSmoothing {
    Groups,   ///< the file's own
    Normals,  ///< faces belong together where they have the same normal at a common corner
    Creases,  ///< faces belong together where they meet at an edge at less than 45 degrees
};

/** Turns the faces' smoothing numbers into 3DS masks, one bit a group, 0 for a flat face. Groups 1 to 32 keep
 * their bit; where there are others, and with Normals and Creases, connected faces share a bit and faces that
 * touch without belonging together get different ones (as long as 32 suffice). */
void AssignSmoothing(CObjPiece& piece, const std::vector<CVec3>& normals, EObjSmoothing source);
