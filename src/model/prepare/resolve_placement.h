// SPDX-License-Identifier: MIT
#pragma once

#include "model/prepare/CPreparedScene.h"

/** Decides for each mesh whose matrix mirrors whether its node or toLocal mirrors it. The file's points are
 * mirrored already, and the inverse of the matrix turns them back. Where the keys of the mesh's node mirror
 * again (a negative scale), nothing else is needed. Where they do not, the mirroring was lost on the way to
 * the keyframer, and toLocal gets it as x -> -x. (lib3ds always does the latter; of 84 such meshes in real
 * files, that is right only for those whose node does not mirror.) Nodes must be evaluated; returns true when
 * they must be evaluated again. */
[[nodiscard]] bool ResolveMirroring(CPreparedScene& prepared);
/** For each mesh, whether ResolveMirroring turns it over with the nodes as they are now. */
[[nodiscard]] std::vector<bool> MeshesToTurn(const CPreparedScene& prepared);

/** True where the node transforms would move the objects a second time; see ResolvePlacedTwice. Nodes must
 * be evaluated. */
[[nodiscard]] bool ArePlacedTwice(const CPreparedScene& prepared);

/** Some programs leave every mesh matrix at the identity although the points already stand where they belong
 * in the scene; the node transforms would then move them a second time. That is so where every keyed node
 * would move its mesh away, and stands itself nearer to the mesh than the pivot does. Such nodes are made to
 * leave the points in place at the evaluated frame. Nodes must be evaluated; true when they must be
 * evaluated again. */
[[nodiscard]] bool ResolvePlacedTwice(CPreparedScene& prepared);
