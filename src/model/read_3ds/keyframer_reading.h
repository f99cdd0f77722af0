// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>

#include "model/read_3ds/CChunkWalker.h"
#include "model/scene/CNoteList.h"

struct Lib3dsFile;
struct Lib3dsNode;

/** Reads keyframer sections (B000): their nodes are appended to file->nodes as one flat list in file order,
 * unlinked (parent_id is set, parent and childs are not). LinkNodes does the rest once all sections are read.
 *
 * Tracks come out in order, one key a frame, finite, and without repeat flags where there is a single key, so
 * that lib3ds' evaluation never divides by zero. Key counts are bounded by the bytes that are there. Nodes and
 * keys beyond the scene's budget are left out. */
class CKeyframerReader {
  public:
    /** Both must outlive it; nobody else adds nodes meanwhile. */
    CKeyframerReader(Lib3dsFile& file, CNoteList& notes);

    void Read(std::span<const std::byte> bytes, const C3dsChunk& section);

  private:
    void ReadNode(std::span<const std::byte> bytes, const C3dsChunk& chunk);

    Lib3dsFile& m_file;
    CNoteList& m_notes;
    Lib3dsNode** m_next;  ///< takes the next node
    std::size_t m_nodeCount = 0, m_keysLeft;
};
