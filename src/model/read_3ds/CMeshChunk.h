// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "model/read_3ds/CChunkWalker.h"
#include "model/scene/CNoteList.h"

/** An array inside the file: offset of its first entry and the number of entries that are really there. */
struct CArraySpan {
    std::size_t offset = 0;
    std::size_t count = 0;
};

/** Faces of one material: an array of 16-bit face numbers (not checked yet). */
struct CMaterialGroup {
    std::string material;
    CArraySpan faces;
};

/** What one triangle mesh chunk (4100) holds. The arrays are left where they lie. */
struct CMeshChunk {
    CArraySpan points;      ///< 12 bytes each
    CArraySpan pointFlags;  ///< 2 bytes each
    CArraySpan texels;      ///< 8 bytes each
    CArraySpan faces;       ///< 8 bytes each
    CArraySpan smoothing;   ///< 4 bytes each
    std::vector<CMaterialGroup> groups;
    std::vector<std::string> boxMap;  ///< six names, or none
    float matrix[4][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}};
    std::uint8_t color = 0;
    bool hasMapping = false;  ///< mapType and mapping are set
    std::uint16_t mapType = 0;
    float mapping[21] = {};  ///< tile u v, position, scale, 4x3 matrix, planar size, cylinder height

    /** Finds everything in the chunk; counts that claim more than is there are cut, and noted. */
    [[nodiscard]] static CMeshChunk Parse(std::span<const std::byte> bytes, const C3dsChunk& chunk,
                                          CNoteList& notes);
};
