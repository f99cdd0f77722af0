// SPDX-License-Identifier: MIT
#pragma once

#include "model/scene/CNoteList.h"

struct Lib3dsFile;

/** Puts every number of materials, cameras, lights and settings into its range; what was far off is noted. */
void ClampScene(Lib3dsFile& file, CNoteList& notes);
