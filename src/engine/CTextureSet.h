// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "engine/CGlTexture.h"

class CGlCurrent;
struct CGlCapabilities;
struct CPreparedMap;
struct CPreparedScene;
struct CPreparedTexture;

/**
 * The textures of a scene on the GPU: one for each picture and way of going on beside it that some material uses.
 * Pictures that no map with an effect uses are not uploaded.
 */
class CTextureSet {
  public:
    /** Uploads what is missing, replaces what another picture stands for now, drops what is no longer used. A picture
     *  whose bytes were given back since (empty, same place) keeps its texture. */
    void Update(CGlCurrent& gl, const CGlCapabilities& can, const CPreparedScene& scene);
    void Clear() { m_textures.clear(); }

    [[nodiscard]] bool Has(const CPreparedMap& map) const;
    /** The map's texture; null where Has is false. */
    [[nodiscard]] CGlTexture* Find(const CPreparedMap& map);
    [[nodiscard]] std::size_t Bytes() const;

  private:
    using CKey = std::pair<int, ETextureWrap>;
    struct CEntry {
        std::string reference, foundAt;
        const void* pixels = nullptr;   ///< never read: tells one picture from another
        int width = 0, height = 0;
        CGlTexture texture;
    };
    static CKey KeyOf(const CPreparedMap& map);
    [[nodiscard]] static bool IsOf(const CEntry& entry, const CPreparedTexture& source);

    std::map<CKey, CEntry> m_textures;
};
