// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "model/read_3ds/CMeshChunk.h"
#include "model/scene/CMaterialIndex.h"
#include "model/scene/CNoteList.h"
#include "model/scene/CScene.h"

struct Lib3dsMesh;

/** The view of a mesh whose arrays lie in the bytes of the file, mended (RepairMeshArrays). Lists that are
 * shorter than they must be are copied into patches and filled up with zeros. Threads may work on different
 * meshes of one file. */
[[nodiscard]] CMeshView ViewOfChunk(std::span<std::byte> bytes, const CMeshChunk& chunk, Lib3dsMesh& mesh,
                                    const CMaterialIndex& materials,
                                    std::vector<std::vector<std::byte>>& patches, CNoteList& notes);

/** Copies the mapping of a mesh chunk, which lib3ds keeps beside the large arrays. */
void FillMeshMapping(const CMeshChunk& chunk, Lib3dsMesh& mesh);
void FillPointFlags(std::span<const std::byte> bytes, const CMeshChunk& chunk, Lib3dsMesh& mesh);
