// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "lib3ds/types.h"

/**
 * Copies of a scene's parts, and what the parts of a Lib3dsFile mean to each other: faces name materials and
 * nodes name meshes. Where names occur twice, the first one in file order is meant.
 */
namespace lib3ds_copies {

/** Longest name that fits the structures, in bytes. */
constexpr std::size_t kMaxName = 63;

/** Copies text into one of the structures' name fields of 64 bytes, cut before a broken UTF-8 sequence. */
void SetName(char (&field)[64], std::string_view text);

/** A copy of everything but the chain and the user data; not in any file yet. Null when memory is short. */
[[nodiscard]] Lib3dsMesh* CopyMesh(const Lib3dsMesh& mesh, std::string_view name);
[[nodiscard]] Lib3dsMaterial* CopyMaterial(const Lib3dsMaterial& material, std::string_view name);
/** True where two materials differ in nothing but name, chain and user data. */
[[nodiscard]] bool SameLook(const Lib3dsMaterial& a, const Lib3dsMaterial& b);

/** The name itself, or with "#2", "#3", ... when the file has it already; fits kMaxName. */
[[nodiscard]] std::string UnusedMaterialName(Lib3dsFile& file, std::string_view name);
[[nodiscard]] std::string UnusedMeshName(Lib3dsFile& file, std::string_view name);

/** How many object nodes, at any depth, show the mesh of that name. */
[[nodiscard]] std::size_t CountNodesOfMesh(const Lib3dsNode* nodes, std::string_view meshName);
/** True when a face of any mesh but this one has the material. */
[[nodiscard]] bool UsedByOtherMeshes(const Lib3dsFile& file, const Lib3dsMesh& mesh, std::string_view material);

}  // namespace lib3ds_copies
