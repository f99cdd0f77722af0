// SPDX-License-Identifier: MIT
#pragma once

#include <lib3ds/tracks.h>

#include <cstddef>

#include "model/read_3ds/CChunkWalker.h"

class CNoteList;

/** Frames of keys and of the animation are held to +- this. */
constexpr int kMaxFrame = 1'000'000;

/** Where notes of keys go, and how many keys the scene may still have. */
struct CKeyNotes {
    CNoteList& notes;
    std::size_t& keysLeft;
};

/** A number of a key; what is not usable is replaced. */
[[nodiscard]] float Usable(float value, float replacement, CNoteList& notes);

/** Reads the chunk of one track: its keys come out in order, the last of several on one frame, and finite, with
 * replacement where a number is not usable. Does nothing when the track has keys already. */
void ReadTrack(CByteCursor in, Lib3dsLin1Track& track, float replacement, CKeyNotes& to);
void ReadTrack(CByteCursor in, Lib3dsLin3Track& track, float replacement, CKeyNotes& to);
void ReadTrack(CByteCursor in, Lib3dsQuatTrack& track, float replacement, CKeyNotes& to);
void ReadTrack(CByteCursor in, Lib3dsBoolTrack& track, float replacement, CKeyNotes& to);
void ReadTrack(CByteCursor in, Lib3dsMorphTrack& track, float replacement, CKeyNotes& to);
