// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/textures/CTextureLocator.h"
#include "model/textures/CTextureNames.h"

/** Pictures held in memory, found by name; those of an archive may have a path. Constant, so
 * any thread may ask. */
class CTexturesInMemory {
  public:
    /** model: the path of the model among the pictures; empty where it has none. */
    CTexturesInMemory(CImageDataTextVec textures, std::string_view model);

    /** Pictures whose path ends as the reference's does come first, then those nearest to the model: the
     * fewest folders up, then the fewest down. Of many with one name in folders of one name
     * (CTextureNames::kMostAlike) the nearest are looked at. */
    [[nodiscard]] const CImageDataText* Find(const CTextureQuery& query) const;

  private:
    struct CPlace {
        std::vector<std::vector<std::string>> folders;  ///< keys of each
        std::size_t up = 0, down = 0;                   ///< from the model's folder
        std::size_t texture = 0;                        ///< in m_textures
    };
    [[nodiscard]] std::size_t CommonFolders(std::size_t number, const CTextureQuery& query) const;

    CImageDataTextVec m_textures;
    std::vector<CPlace> m_places;        ///< nearest first
    CTextureNames m_names;               ///< without path, numbered as m_places
    CTextureNames m_inFolder;            ///< the same, with the folder that each lies in
    CNameMap<std::size_t> m_byFullName;  ///< those of texture_name::WithAlpha
};
