// SPDX-License-Identifier: MIT
#pragma once

#include "model/prepare/CPreparedScene.h"

class CScene;

/** Fills nodes, lights and cameras (not evaluated yet, see EvaluateNodes) from the node tree. meshes must be
 * complete. A mesh that no node shows gets a node of its own, unless it is a morph target in a scene that has
 * object nodes. */
void PrepareNodes(const CScene& scene, CPreparedScene& prepared);
