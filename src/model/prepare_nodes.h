// SPDX-License-Identifier: MIT
#pragma once

#include "model/CPreparedScene.h"

class CScene;

/**
 * Fills nodes, lights and cameras (not evaluated yet, see EvaluateNodes) from the node tree. meshes must be
 * complete. A mesh that no node shows gets a node of its own where the scene has no object nodes at all;
 * where it has some, such a mesh is drawn too unless it is the target of a morph.
 */
void PrepareNodes(const CScene& scene, CPreparedScene& prepared);

/**
 * Decides for each mesh whose matrix mirrors who turns it over. Its points are mirrored already; their
 * inverse matrix turns them back. Where the keys of the mesh's node mirror again (a negative scale) that is
 * all. Where they do not, the mirror was lost on the way to the keyframer, and toLocal gets it as x -> -x.
 * (lib3ds always does the latter. Of 84 such meshes of real files it is right for those alone whose node does
 * not mirror.) Nodes must be evaluated; true when they must be evaluated again.
 */
[[nodiscard]] bool ResolveMirroring(CPreparedScene& prepared);
