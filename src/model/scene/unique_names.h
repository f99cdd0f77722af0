// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "model/scene/CNoteList.h"

struct Lib3dsFile;

/** The name, or with "#2", "#3", ... appended (and cut so that it still fits) the first that is not
 * taken. The result is added to taken. */
[[nodiscard]] std::string UniqueName(std::string_view name, std::set<std::string>& taken);

/** Gives same-named meshes and materials names of their own, so that neither is lost: everything in a 3DS
 * file refers by name. The k-th node without an instance name follows the k-th mesh of its name. Call before
 * nodes are linked. */
void MakeNamesUnique(Lib3dsFile& file, CNoteList& notes);
