// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "base/name_hash.h"

struct Lib3dsMaterial;

/** Finds the index of a material, in file order, by its name. The names must outlive it. */
class CMaterialIndex {
  public:
    /** first: of the list that is linked by `next`; may be null. */
    explicit CMaterialIndex(const Lib3dsMaterial* first);
    /** CMeshView::kNoMaterial when there is none of that name. */
    [[nodiscard]] std::uint16_t Find(std::string_view name) const;

  private:
    std::unordered_map<std::string_view, std::uint16_t, CNameHash> m_indexOfName;
};
