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

/** What of a picture a map needs: its colours, or one value as grey. */
enum class EPovPicture { Color, NegativeColor, Value, NegativeValue, Alpha, NegativeAlpha };

/** The pictures of an exported scene: which files there are, and writing them beside the scene. Files that
 * POV-Ray reads as the view does are copied byte by byte, all others become PNG.
 *
 * Names begin with the scene's, so that scenes in one folder do not take each other's pictures, and are
 * ASCII, as POV-Ray finds no others. No file that is a source of the scene is ever a target. */
class CPovPictures {
  public:
    struct CPicture {
        std::string fileName;
        std::string_view type;  ///< POV-Ray's keyword
        int width = 0, height = 0;
    };

    /** scene and locator must outlive it; outputPath is the .pov file, UTF-8. */
    CPovPictures(const CPreparedScene& scene, const CTextureLocator& locator, std::string_view outputPath);

    /** The file that shows this of a texture, planned at the first call; null where there is
     * no such picture. */
    [[nodiscard]] const CPicture* Use(int texture, EPovPicture kind);
    [[nodiscard]] std::size_t Count() const { return m_planned.size(); }

    /** Writes picture number i of Count() under a temporary name. */
    [[nodiscard]] CStatus Stage(std::size_t i);
    /** Those that were written, to get their names with others. */
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
