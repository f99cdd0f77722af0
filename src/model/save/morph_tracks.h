// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

struct Lib3dsFile;

/** Puts the morph tracks into the bytes that lib3ds has written of a file: it reads them, and leaves them out
 * when it writes. Without them each shape would become an object of its own. */
void WriteMorphTracks(const Lib3dsFile& file, std::vector<std::byte>& bytes);
