// SPDX-License-Identifier: MIT
#pragma once

struct CPreparedScene;

/** Sets the bounds of nodes and scene, and the sphere round it, for the transforms and the visibility that the
 * nodes have now. They are those of the vertices; the bounds of turned boxes stand in for hidden nodes, for
 * meshes without vertices, and for the nodes behind the first that have scene_budget::kVerticesForBounds
 * vertices together. What did not move since the last call is not worked out again.
 *
 * @param threads 0: one for each core, where there are many vertices */
void EvaluateBounds(CPreparedScene& prepared, unsigned threads);
