// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/CResult.h"
#include "files/CAtomicFileGroup.h"

class CTextureLocator;
struct CPreparedScene;
struct CPreparedTexture;

/** The part of a picture that a map needs: its colours, or one value as grey. */
enum class EPovPicture { Color, NegativeColor, Value, NegativeValue, Alpha, NegativeAlpha };

/** Chooses the picture files of an exported scene and writes them beside it. Files that POV-Ray decodes as
 * the view does are copied byte by byte; all others become PNG.
 *
 * File names begin with the scene's name, so that scenes in one folder do not overwrite each
 * other's pictures, and are ASCII, because POV-Ray finds no others. A source file of the scene is
 * never overwritten. */
class CPovPictures {
  public:
    struct CPicture {
        std::string fileName;
        std::string_view type;  ///< POV-Ray's keyword
        int width = 0, height = 0;
    };

    /** scene and locator must outlive it; outputPath is the .pov file, UTF-8. */
    CPovPictures(const CPreparedScene& scene, const CTextureLocator& locator, std::string_view outputPath);

    /** The file for this part of a texture's picture, chosen at the first call; null when there is no such
     * picture. Valid as long as this object. */
    [[nodiscard]] const CPicture* Use(int texture, EPovPicture kind);
    [[nodiscard]] std::size_t Count() const { return m_planned.size(); }

    /** Writes picture i, 0 to Count() - 1, under a temporary name. */
    [[nodiscard]] CStatus Stage(std::size_t i);
    /** The written files, which the caller gives their final names together with others. */
    [[nodiscard]] CAtomicFileGroup TakeStaged() { return std::move(m_staged); }

  private:
    struct CPlanned {
        CPicture picture;
        int texture = 0;
        EPovPicture kind = EPovPicture::Color;
        std::vector<std::byte> original;  ///< what is copied; empty: it is encoded
        std::string path;
    };
    [[nodiscard]] std::vector<std::byte> Original(const CPreparedTexture& texture) const;
    [[nodiscard]] std::string FreeName(const std::string& extension) const;

    const CPreparedScene& m_scene;
    const CTextureLocator& m_locator;
    std::string m_folder, m_stem;
    std::map<std::pair<int, EPovPicture>, std::size_t> m_known;
    std::deque<CPlanned> m_planned;  ///< callers hold pointers to its pictures
    CAtomicFileGroup m_staged;
};

/** True where POV-Ray decodes these bytes to the colours that we do: a JPEG of one or three components, an
 * opaque PNG of 8 bits without colour corrections. type becomes POV-Ray's keyword. */
[[nodiscard]] bool PovReadsAlike(const std::vector<std::byte>& bytes, std::string_view& type);
