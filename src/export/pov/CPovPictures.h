// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/CResult.h"
#include "base/name_hash.h"
#include "files/CFilesBeside.h"

class CTextureLocator;
struct CPreparedScene;
struct CPreparedTexture;

/** The part of a picture that a map needs: its colours, or one value as grey. Opacity is a value, and it and Alpha
 * are written as they count (CountedAlpha). */
enum class EPovPicture {
    Color,
    NegativeColor,
    Value,
    NegativeValue,
    Opacity,
    NegativeOpacity,
    Alpha,
    NegativeAlpha
};

/** Chooses the picture files of an exported scene and writes them beside it. Files that POV-Ray decodes as
 * the view does are copied byte by byte; all others become PNG.
 *
 * However many names the materials have for a picture that was found, it is written once. File names begin with the
 * scene's name, so that scenes in one folder do not overwrite each other's pictures, and are ASCII, because POV-Ray finds
 * no others. Which name is free is CFilesBeside's rule; a source file of the scene is never overwritten. */
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
    /** The comment that the scene's file must hold once all are staged; see CFilesBeside. */
    [[nodiscard]] std::string Record() const;
    /** The written files, which the caller gives their final names together with others. */
    [[nodiscard]] CAtomicFileGroup TakeStaged() { return m_files.TakeFiles(); }

  private:
    struct CPlanned {
        CPicture picture;
        int texture = 0;
        EPovPicture kind = EPovPicture::Color;
        bool isCopied = false;  ///< as it was found; else it is encoded
    };
    [[nodiscard]] std::vector<std::byte> Original(const CPreparedTexture& texture) const;
    /** The first texture that was found at the same place as this one. */
    [[nodiscard]] int FirstAlike(int texture);
    [[nodiscard]] CPlanned Plan(int texture, EPovPicture kind);

    const CPreparedScene& m_scene;
    const CTextureLocator& m_locator;
    std::string m_stem;
    CNameMap<int> m_firstAt;  ///< by where they were found
    std::map<std::pair<int, EPovPicture>, std::size_t> m_known;
    std::deque<CPlanned> m_planned;  ///< callers hold pointers to its pictures
    CFilesBeside m_files;
    std::optional<CError> m_error;  ///< of choosing a name
};

/** True where POV-Ray decodes these bytes to the colours that we do: a JPEG of one or three components, an
 * opaque PNG of 8 bits without colour corrections. type becomes POV-Ray's keyword. */
[[nodiscard]] bool PovReadsAlike(const std::vector<std::byte>& bytes, std::string_view& type);
