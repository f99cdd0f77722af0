// SPDX-License-Identifier: MIT
#pragma once

#include "base/math/CMatrix.h"
#include "lib3ds/types.h"

/** Moving and turning the nodes of a Lib3dsFile. An animated node keeps its animation: every key moves along.
 * Nothing is evaluated here; the node's matrix is as before until the scene is evaluated anew. */
namespace node_edits {

/** Adds offset, in the coordinates of the node's parent, to all position keys of an object node (to a new one
 * at frame 0 when there is none). */
void MoveTracks(Lib3dsNode& node, CVec3 offset);
/** Turns an object node about its own place: rotation is applied after its own rotation, in the coordinates
 * of its parent, and must be a rotation. */
void RotateTracks(Lib3dsNode& node, const CMat4& rotation);
/** Carries points and matrix of a mesh: for meshes that no node shows. */
void TransformMesh(Lib3dsMesh& mesh, const CMat4& transform);

/** rotation, given in scene coordinates, as it is seen in the coordinates of parentWorld (whose scale and
 * shear do not count). */
[[nodiscard]] CMat4 RotationInParent(const CMat4& parentWorld, const CMat4& rotation);
/** Where a mesh without a node is turned: the origin of its matrix, or its middle when that
 * matrix says nothing. */
[[nodiscard]] CVec3 TurningPoint(const Lib3dsMesh& mesh);

}  // namespace node_edits
