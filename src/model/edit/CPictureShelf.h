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

/** Caches the picture files that edits have read, and decoded pictures that no current edit shows, so that
 * nothing is read or decoded twice while a scene is open. */
class CPictureShelf {
  public:
    using CPicture = std::shared_ptr<const CImageDataText>;  ///< the second owner is the scene's locator

    /** The bytes of a file (UTF-8 path) with their current name, at first the file's own. A file that has
     * changed since it was read is read again. */
    [[nodiscard]] CResult<CPicture> Read(std::string_view path);
    /** Adds bytes that were not read from a file of their own. */
    [[nodiscard]] CPicture Add(CImageDataText picture);
    /** Returns the same bytes under another name, which Read gives them from now on. */
    [[nodiscard]] CPicture Rename(const CPicture& picture, std::string_view name);

    /** Keeps a decoded picture that is not shown at present, under the place where its bytes were found. */
    void Keep(const std::optional<CTextureHit>& hit, CPreparedTexture texture);
    /** Takes out the picture that Keep stored for the place; an empty texture where there is none. */
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
    std::vector<CPicture> m_held;  ///< kept, so that no other bytes get their address
    std::map<CPlace, CPreparedTexture> m_decoded;
};
