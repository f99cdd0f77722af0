// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "model/read_3ds/CChunkWalker.h"
#include "model/scene/CNoteList.h"

/** Appends a clean copy of one chunk to out, with all its children: what lib3ds is given to read
 * instead of the file.
 *
 * Only chunks of the rule table are copied. Every one comes out with its full contents (a short one is
 * left out), strings that end within 63 characters, finite numbers, and a true size. Kinds that lib3ds
 * does not read are turned into those it does: byte colours into float colours, float percentages into
 * integer ones; a texture map without a tiling chunk gets one that says "tiled", as lib3ds would take "not
 * tiled" for its default. */
void CopyCleanChunk(std::span<const std::byte> bytes, const C3dsChunk& chunk, std::vector<std::byte>& out,
                    CNoteList& notes);

/** True when the rule table knows the id. */
[[nodiscard]] bool IsCleanableChunk(std::uint16_t id);
