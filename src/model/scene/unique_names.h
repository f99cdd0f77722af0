// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/name_hash.h"
#include "model/scene/CNoteList.h"

struct Lib3dsFile;

/** Names of one kind, each given once. However the names are chosen, each takes constant time on average. */
class CUniqueNames {
  public:
    /** The name, or with "#2", "#3", ... appended (and cut so that it still fits) one that is not taken; it is
     * taken from then on. */
    [[nodiscard]] std::string Take(std::string_view name);
    void Add(std::string_view name) { m_taken.emplace(name); }
    /** The name may be given again. */
    void Release(const std::string& name);

  private:
    CNameSet m_taken;
    CNameMap<std::uint32_t> m_nextNumber;  ///< by what the names with a number begin with
};

/** Gives same-named meshes and materials names of their own, so that neither is lost: everything in a 3DS
 * file refers by name. The k-th node without an instance name follows the k-th mesh of its name. Call before
 * nodes are linked. */
void MakeNamesUnique(Lib3dsFile& file, CNoteList& notes);
