// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "lib3ds/types.h"

/** Copies of a scene's parts, under names that fit the structures. */
namespace lib3ds_copies {

/** A copy of everything but the chain and the user data, in no file and owned by the caller. Null when memory
 * is short. */
[[nodiscard]] Lib3dsMesh* CopyMesh(const Lib3dsMesh& mesh, std::string_view name);
/** The same without points, texture coordinates and faces. */
[[nodiscard]] Lib3dsMesh* CopyMeshHeader(const Lib3dsMesh& mesh, std::string_view name);
[[nodiscard]] Lib3dsMaterial* CopyMaterial(const Lib3dsMaterial& material, std::string_view name);
/** True where two materials differ in nothing but name, chain and user data. */
[[nodiscard]] bool SameLook(const Lib3dsMaterial& a, const Lib3dsMaterial& b);

}  // namespace lib3ds_copies
