// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "model/prepare/CPreparedScene.h"

struct CMeshView;
class CScene;

// The steps of PrepareScene and EvaluateNodes that work on nodes.

/** Fills nodes, lights and cameras (not evaluated yet, see EvaluateNodes) from the node tree. meshes must be
 * complete. A mesh that no node shows gets a node of its own, unless it is a morph target in a scene that has
 * object nodes. */
void PrepareNodes(const CScene& scene, CPreparedScene& prepared);

/** For each material whether it needs texture coordinates. */
[[nodiscard]] std::vector<bool> MappedMaterials(const CPreparedScene& prepared);
/** Makes a mesh as PrepareMesh does, with texture coordinates where one of its materials is mapped. */
[[nodiscard]] CPreparedMesh PrepareMappedMesh(const CMeshView& view, const std::vector<bool>& mapped);

/** Gives the meshes whose nodes morph the shapes that their tracks have at a frame: points are blended between
 * two keys, in object coordinates, and normals made anew. A mesh whose shape changes gets a new stamp.
 *
 * @param threads 0: one for each core */
void EvaluateMorphs(CPreparedScene& prepared, const CScene& scene, float frame, unsigned threads);

/** Sets the bounds of nodes and scene, and the sphere round it, for the transforms and the visibility that the
 * nodes have now. They are those of the vertices; the bounds of turned boxes stand in for hidden nodes, for
 * meshes without vertices, and for the nodes behind the first that have scene_budget::kVerticesForBounds
 * vertices together. What did not move since the last call is not worked out again.
 *
 * @param threads 0: one for each core, where there are many vertices */
void EvaluateBounds(CPreparedScene& prepared, unsigned threads);
