// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "model/read_3ds/CMeshChunk.h"
#include "model/scene/CNoteList.h"
#include "model/scene/CScene.h"

struct Lib3dsMaterial;
struct Lib3dsMesh;

/** Finds the index of a material, in file order, by its name. The names must outlive it. */
class CMaterialIndex {
  public:
    explicit CMaterialIndex(const Lib3dsMaterial* first);
    /** kNoMaterial when there is none of that name. */
    [[nodiscard]] std::uint16_t Find(std::string_view name) const;

  private:
    std::unordered_map<std::string_view, std::uint16_t> m_indexOfName;
};

/** The view of a mesh whose arrays lie in the bytes of the file, mended (RepairMeshArrays). Lists that are
 * shorter than they must be are copied into patches and filled up with zeros. Threads may work on different
 * meshes of one file. */
[[nodiscard]] CMeshView ViewOfChunk(std::span<std::byte> bytes, const CMeshChunk& chunk, Lib3dsMesh& mesh,
                                    const CMaterialIndex& materials,
                                    std::vector<std::vector<std::byte>>& patches, CNoteList& notes);

/** Copies the mapping of a mesh chunk, which lib3ds keeps beside the large arrays. */
void FillMeshMapping(const CMeshChunk& chunk, Lib3dsMesh& mesh);
void FillPointFlags(std::span<const std::byte> bytes, const CMeshChunk& chunk, Lib3dsMesh& mesh);
