// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

/** The scenes that come with the program. Each writes its .3ds and pictures into a folder that exists. */
namespace scenes {

/** A clockwork model of the planets: hierarchy, pivots, keyframes, textures, lights, cameras. */
void MakeOrrery(const std::filesystem::path& folder);
/** A shelf of balls, one material feature each. */
void MakeMaterials(const std::filesystem::path& folder);
/** A chessboard: instances of one mesh, mirrored meshes, a move that is played. */
void MakeChess(const std::filesystem::path& folder);
/** A knot on a plinth, without a keyframer section. */
void MakeKnot(const std::filesystem::path& folder);
/** A lump of clay that becomes a bowl and a vase: one mesh that changes its shape. */
void MakeVase(const std::filesystem::path& folder);
/** Small scenes (in folder/3ds) that together hold every part of the format that lib3ds writes, and archives
 * of them (in folder/zip); for tests and fuzzing. */
void MakeSeeds(const std::filesystem::path& folder);

}  // namespace scenes
