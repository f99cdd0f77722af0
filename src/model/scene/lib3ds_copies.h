// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "lib3ds/types.h"

/** Copies of a scene's parts, under names that fit the structures and that nothing else has. */
namespace lib3ds_copies {

/** A copy of everything but the chain and the user data; not in any file yet. Null when memory is short. */
[[nodiscard]] Lib3dsMesh* CopyMesh(const Lib3dsMesh& mesh, std::string_view name);
[[nodiscard]] Lib3dsMaterial* CopyMaterial(const Lib3dsMaterial& material, std::string_view name);
/** True where two materials differ in nothing but name, chain and user data. */
[[nodiscard]] bool SameLook(const Lib3dsMaterial& a, const Lib3dsMaterial& b);

/** The name itself, or with "#2", "#3", ... when the file has it already; fits the structures. */
[[nodiscard]] std::string UnusedMaterialName(Lib3dsFile& file, std::string_view name);
[[nodiscard]] std::string UnusedMeshName(Lib3dsFile& file, std::string_view name);

/** True when a face of any mesh but this one has the material. */
[[nodiscard]] bool UsedByOtherMeshes(const Lib3dsFile& file, const Lib3dsMesh& mesh,
                                     std::string_view material);

}  // namespace lib3ds_copies
