// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

#include "model/levels/CMeshLevels.h"

/** Meshes of fewer triangles get no levels. */
constexpr std::uint32_t kLeastTrianglesForLevels = 500;

/** Makes levels of about 1/4, 1/8, 1/16, 1/32, 1/64 and 1/256 of the mesh's triangles. Borders between materials, seams of
 * texture coordinates and hard edges stay closed. A level that would save less than a fifth of the one before is left
 * out, and so is what would exceed a third of the mesh's memory. No levels for a mesh with places that are not finite.
 * Once stop is true it ends within some milliseconds; the result is then incomplete. */
[[nodiscard]] CMeshLevels MakeLevels(const CPreparedMesh& mesh, const std::atomic<bool>& stop);

/** For each batch of a mesh the length of edge, in the mesh's units, that its surface is made of: the longest edge of
 * each triangle, as a root mean square weighted by area. A few large triangles among many small ones count. */
[[nodiscard]] std::vector<float> GrainsOf(std::span<const CPreparedVertex> vertices,
                                          std::span<const std::uint16_t> indices,
                                          std::span<const CPreparedBatch> batches);
[[nodiscard]] std::vector<float> GrainsOf(std::span<const CPreparedVertex> vertices,
                                          std::span<const std::uint32_t> indices,
                                          std::span<const CPreparedBatch> batches);
