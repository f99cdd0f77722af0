// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>

#include "model/read_3ds/CChunkWalker.h"
#include "model/scene/CNoteList.h"

struct Lib3dsFile;
struct Lib3dsNode;

/** Reads the keyframer section (B000): its nodes are appended to file->nodes as one flat list in file order,
 * unlinked (parent_id is set, parent and childs are not). LinkNodes does the rest once all sections are read.
 *
 * Tracks come out in order, one key a frame, finite, and without repeat flags where there is a single key, so
 * that lib3ds' evaluation never divides by zero. Key counts are bounded by the bytes that are there. */
void ReadKeyframer(std::span<const std::byte> bytes, const C3dsChunk& chunk, Lib3dsFile& file,
                   CNoteList& notes);

/** Builds the tree from the flat list: ids are made unique, unknown parents and cycles become roots, and a
 * chain deeper than lib3ds' recursion can bear is cut. Order of siblings is kept. */
void LinkNodes(Lib3dsFile& file, CNoteList& notes);
