// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "model/edit/CEdit.h"

struct CPreparedScene;

/** Gives edits the names that a scene has, where people write them otherwise: in another code page (scripts are mostly UTF-8,
 * 3DS files are not), in another letter case, with blanks or quotes round them. A name that the scene has stays as it is, and
 * so does one that could mean several or none. The scene must not have been edited. */
void FitNames(std::vector<CEdit>& edits, const CPreparedScene& scene);
