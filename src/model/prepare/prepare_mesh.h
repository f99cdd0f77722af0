// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "model/prepare/CPreparedScene.h"

struct CMeshView;

/** Makes one prepared mesh: normals, split vertices, batches, bounds.
 *
 * A corner's normal is the sum of the normals of those faces at its place that share a smoothing group with
 * its own face, weighted by their angle there (Thürmer and Wüthrich, "Computing vertex normals from polygonal
 * facets", 1998) and by how far they can be trusted (CollectFaces). A face in no group is flat. Points at one
 * place with different texture coordinates are one, as the map needs them; those that share these, too, were
 * split to make a hard edge. A face that is turned over against its neighbours (CFanSides) is not averaged
 * with them. Corners of one point with equal normals share a prepared vertex. Where a face is flagged to lie
 * on the seam of a wrapped mapping, its low texture coordinates are moved up by one. Faces with two equal corners are left out.
 *
 * @param defaultMaterial the material of faces that are in no material group
 * @param keepTexCoords   false when no material of the mesh has a map */
[[nodiscard]] CPreparedMesh PrepareMesh(const CMeshView& view, std::uint32_t defaultMaterial,
                                        bool keepTexCoords);

/** The same mesh without vertices, indices and batches: name, bounds and place. */
[[nodiscard]] CPreparedMesh PrepareOutline(const CMeshView& view);
