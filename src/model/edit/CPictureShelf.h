// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/CResult.h"
#include "model/prepare/CPreparedScene.h"
#include "model/textures/CTextureLocator.h"

/** Keeps what was read of picture files for edits, and decoded pictures that no edit in force shows, so that
 * neither is done twice while a scene is open. */
class CPictureShelf {
  public:
    using CPicture = std::shared_ptr<const CImageDataText>;  ///< the second owner is the scene's locator

    /** The bytes of a file (UTF-8 path), under the name that they go by, its own at first. A file that has
     * changed since is read anew. */
    [[nodiscard]] CResult<CPicture> Read(std::string_view path);
    /** Bytes that are not those of a file. */
    [[nodiscard]] CPicture Add(CImageDataText picture);
    /** The same bytes go by another name from now on. */
    [[nodiscard]] CPicture Rename(const CPicture& picture, std::string_view name);

    /** A decoded picture that is not shown at present, by where it is found. */
    void Keep(const std::optional<CTextureHit>& hit, CPreparedTexture texture);
    /** It, or an empty texture. */
    [[nodiscard]] CPreparedTexture Take(const std::optional<CTextureHit>& hit);

  private:
    struct CFile {
        std::string path;
        long long changedAt = 0;
        unsigned long long size = 0;
        CPicture picture;
    };
    using CPlace = std::pair<const void*, std::string>;  ///< of a CTextureHit

    std::vector<CFile> m_files;
    std::vector<CPicture> m_held;  ///< kept, so that no other bytes lie where they lie
    std::map<CPlace, CPreparedTexture> m_decoded;
};
