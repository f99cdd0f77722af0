// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** How the names of pictures are compared: without regard to letter case (ASCII, Latin, Greek and
 * Cyrillic) and to the code page in which a material names them. Every name is turned into a key; equal
 * keys mean the same name. */
namespace texture_name {

/** The key of a name as it stands on disk or in an archive: UTF-8, or any bytes. */
[[nodiscard]] std::string FoldKey(std::string_view name);

/** The keys that a name in a model file may mean, the likeliest first: as UTF-8, in each
 * code page, as bytes. */
[[nodiscard]] std::vector<std::string> ReferenceKeys(std::string_view name);

/** "stem" and "ext" of a key "stem.ext" (at its last dot); ext is empty without one. */
struct CParts {
    std::string_view stem, ext;
};
[[nodiscard]] CParts Split(std::string_view key);

/** The place of an ending (lower case, without dot) among those of PictureFormats; kNoPicture for
 * any other. */
inline constexpr std::size_t kNoPicture = 1000;
[[nodiscard]] std::size_t PictureRank(std::string_view ext);
[[nodiscard]] inline bool IsPictureExtension(std::string_view ext) {
    return PictureRank(ext) != kNoPicture;
}

/** True where two names of pictures differ in nothing but letter case and the ending. */
[[nodiscard]] bool SameButForEnding(std::string_view a, std::string_view b);
/** The same of two keys. */
[[nodiscard]] bool SameKeyButForEnding(std::string_view a, std::string_view b);

/** The name of the PNG picture that Compress to zip puts beside NAME.jpg when the picture has transparent parts, which
 * a JPEG file cannot hold: NAME.jpg.png. Empty for any other name. */
[[nodiscard]] std::string WithAlpha(std::string_view name);

/** DOS programs cut names down: BERETT~1.JPG or BERETTA_.JPG for "beretta new.jpg". KeyOfCutDown is nothing for
 * a key that none of them made, else a text that is among the CutDownKeys of each key that it may stand for. */
[[nodiscard]] std::optional<std::string> KeyOfCutDown(std::string_view cut);
/** key is that of a picture's name; empty where DOS would have kept it. */
[[nodiscard]] std::vector<std::string> CutDownKeys(std::string_view key);

}  // namespace texture_name

/** What a material asks for, taken apart. Whatever the bytes are, nothing of it leads
 * upwards or to a root. */
struct CTextureQuery {
    explicit CTextureQuery(std::string_view reference);

    /** A query for "folder/name", where folder is the one before the name; this one where there is none. */
    [[nodiscard]] CTextureQuery BaseInFolder() const;

    std::string base;                   ///< the file name's bytes; empty when there is none
    std::vector<std::string> baseKeys;  ///< never empty unless base is
    std::vector<std::vector<std::string>>
        folders;             ///< keys of each folder on the way, those after the last ".."
    std::string lastFolder;  ///< the bytes of the last of them
    bool absolute = false;   ///< began with a root, a drive or a host
};
