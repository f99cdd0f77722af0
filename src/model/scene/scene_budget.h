// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

/** How much of a scene is taken in. A file may ask for far more than it holds bytes: a mesh takes six bytes in
 * a file and thousands in memory, and a packed file is a thousand times smaller still. What is beyond a budget
 * is left out and noted, unless something else is said. docs/limits.md lists them for users.
 *
 * Real scenes stay far below: the largest known hold some 65,000 meshes, 20,000 nodes and 5 million triangles. */
namespace scene_budget {

// --- what is read -----------------------------------------------------------------------------------------
constexpr std::size_t kMeshes = 100'000;
constexpr std::size_t kMeshesWithoutFaces = 10'000;  ///< of these; they show nothing
constexpr std::size_t kMaterials = 16'384;
constexpr std::size_t kLights = 10'000;
constexpr std::size_t kCameras = 10'000;
constexpr std::size_t kNodes = 65'000;     ///< their ids have 16 bits, and one means "no parent"
constexpr std::size_t kKeys = 2'000'000;   ///< of all tracks together
constexpr std::size_t kNodeDepth = 8'192;  ///< lib3ds goes down by recursion; a chain is cut there
constexpr std::size_t kNotes = 200;        ///< of reading, and again of preparing; further ones are counted

// --- what is prepared -------------------------------------------------------------------------------------
/** Triangles and batches that are drawn, those of a mesh once for each node that shows it. Nodes beyond show
 * nothing. */
constexpr std::uint64_t kDrawnTriangles = 36'000'000;
constexpr std::uint64_t kDrawnBatches = 400'000;
/** Vertices whose places are worked out for the bounds of one frame; nodes beyond have the bounds of their
 * turned boxes. Some 0.1 s on one core. */
constexpr std::uint64_t kVerticesForBounds = 20'000'000;
/** Points of all meshes that change their shapes together. */
constexpr std::size_t kMorphPoints = 1'000'000;
constexpr std::size_t kMorphingNodes = 1'000;

// --- pictures ---------------------------------------------------------------------------------------------
/** Different names of pictures that are looked for. */
constexpr std::size_t kPictureNames = 20'000;
/** Pictures of an archive as they are packed in it; only those that the model names are read. */
constexpr std::uint64_t kArchivedPictureBytes = 256ULL << 20;
/** Pixels of all pictures of a scene that are decoded: so many, and so many more for each byte of their files
 * (those of noise have one or two). Those of a JPEG count a quarter. Some 0.7 s on two cores. */
constexpr std::uint64_t kPicturePixels = 64ULL << 20;
constexpr std::uint64_t kPicturePixelsOfByte = 32;
/** Decoded pictures of a scene together, as RGBA; see LoadTextures for what happens beyond. In the memory of
 * the graphics card they take a third more. */
constexpr std::uint64_t kPictureBytes = 384ULL << 20;
/** The same where a scene is opened for one picture of it, which shows no such detail. */
constexpr std::uint64_t kPictureBytesForOneView = 96ULL << 20;

}  // namespace scene_budget
