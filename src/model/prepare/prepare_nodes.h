// SPDX-License-Identifier: MIT
#pragma once

#include "model/prepare/CPreparedScene.h"

class CScene;

/** Fills nodes, lights and cameras (not evaluated yet, see EvaluateNodes) from the node tree. meshes must be
 * complete. A mesh that no node shows gets a node of its own where the scene has no object nodes at all;
 * where it has some, such a mesh is drawn too unless it is the target of a morph. */
void PrepareNodes(const CScene& scene, CPreparedScene& prepared);
