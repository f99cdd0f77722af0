// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "model/CTextureLocator.h"
#include "model/CTextureNames.h"

/** Pictures held in memory, found by name; those of an archive may have a path. Constant, so any thread may
 * ask. */
class CTexturesInMemory {
  public:
    explicit CTexturesInMemory(CImageDataTextVec textures);

    /** Pictures whose path ends as the reference's does come first, then those with the shortest path. */
    [[nodiscard]] const CImageDataText* Find(const CTextureQuery& query) const;

  private:
    [[nodiscard]] std::size_t CommonFolders(std::size_t number, const CTextureQuery& query) const;

    CImageDataTextVec m_textures;
    CTextureNames m_names;                                         ///< without path, numbered as m_textures
    std::vector<std::vector<std::vector<std::string>>> m_folders;  ///< keys of each picture's folders
};
