// SPDX-License-Identifier: MIT
#pragma once

#include "model/prepare/CPreparedScene.h"

/** Decides for each mesh whose matrix mirrors who turns it over. Its points are mirrored already; their
 * inverse matrix turns them back. Where the keys of the mesh's node mirror again (a negative scale) that is
 * all. Where they do not, the mirror was lost on the way to the keyframer, and toLocal gets it as x -> -x.
 * (lib3ds always does the latter. Of 84 such meshes of real files it is right for those alone whose node does
 * not mirror.) Nodes must be evaluated; true when they must be evaluated again. */
[[nodiscard]] bool ResolveMirroring(CPreparedScene& prepared);
/** The meshes that it turns over, as their nodes are now. */
[[nodiscard]] std::vector<bool> MeshesToTurn(const CPreparedScene& prepared);

/** True where some programs' habit, see ResolvePlacedTwice, would move the objects twice. Nodes must be
 * evaluated. */
[[nodiscard]] bool ArePlacedTwice(const CPreparedScene& prepared);

/** Some programs leave every mesh matrix at the identity although the points already stand where they belong
 * in the scene; the node transforms would then move them a second time. That is so where every keyed node
 * would move its mesh away, and stands itself nearer to the mesh than the pivot does. Such nodes are made to
 * leave the points in place at the evaluated frame. Nodes must be evaluated; true when they must be
 * evaluated again. */
[[nodiscard]] bool ResolvePlacedTwice(CPreparedScene& prepared);
