// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "engine/gl/CGlTexture.h"
#include "engine/pipeline/shader_source.h"

class CGlCurrent;
struct CGlCapabilities;
struct CPreparedMap;
struct CPreparedScene;
struct CPreparedTexture;

/** How a map uses its picture: Separate uploads colours and alpha as they are; Multiplied uploads alpha as it counts
 * (CountedAlpha) and the colours multiplied by it; Opacity uploads grey and alpha as they count. */
enum class EAlphaUse { Separate, Multiplied, Opacity };

/** The textures of a scene on the GPU: one for each combination of picture, wrap mode and use of alpha that
 * some material needs. Pictures that no map with an effect uses are not uploaded. */
class CTextureSet {
  public:
    /** Uploads missing textures, replaces those whose picture has changed, and deletes those no longer used.
     * A picture whose bytes were freed after the upload keeps its texture. */
    void Update(CGlCurrent& gl, const CGlCapabilities& can, const CPreparedScene& scene);
    void Clear() { m_textures.clear(); }

    /** True when the map's picture was uploaded. slot: the map's kind. */
    [[nodiscard]] bool Has(EMapKind slot, const CPreparedMap& map) const;
    /** The map's texture; null where Has is false. */
    [[nodiscard]] CGlTexture* Find(EMapKind slot, const CPreparedMap& map);
    [[nodiscard]] std::size_t Bytes() const;

  private:
    using CKey = std::tuple<int, ETextureWrap, EAlphaUse>;
    struct CEntry {
        std::string reference, foundAt;
        const void* pixels = nullptr;  ///< never read: tells one picture from another
        int width = 0, height = 0;
        CGlTexture texture;
    };
    static CKey KeyOf(EMapKind slot, const CPreparedMap& map);
    [[nodiscard]] static bool IsOf(const CEntry& entry, const CPreparedTexture& source);

    std::map<CKey, CEntry> m_textures;
};
