// SPDX-License-Identifier: MIT
#pragma once

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

/** True where a DOS program may have cut name down to cut: BERETT~1.JPG or BERETTA_.JPG for
 * beretta_new.jpg. Both are keys. */
[[nodiscard]] bool IsTruncationOf(std::string_view cut, std::string_view name);

}  // namespace texture_name

/** What a material asks for, taken apart. Whatever the bytes are, nothing of it leads
 * upwards or to a root. */
struct CTextureQuery {
    explicit CTextureQuery(std::string_view reference);

    std::string base;                   ///< the file name's bytes; empty when there is none
    std::vector<std::string> baseKeys;  ///< never empty unless base is
    std::vector<std::vector<std::string>>
        folders;            ///< keys of each folder on the way, those after the last ".."
    bool absolute = false;  ///< began with a root, a drive or a host
};
