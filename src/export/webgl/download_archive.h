// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "base/CResult.h"

struct CPreparedScene;
struct Lib3dsFile;

/** The archive that a page's download link leads to. */
namespace download_archive {

/** Writes a file to a path (UTF-8). */
using CWriter = std::function<CStatus(std::string_view path)>;

struct CContent {
    Lib3dsFile* scene = nullptr;  ///< a CTexturesOfScene tells where its pictures are
    CWriter writeScene;           ///< writes it as a .3ds file
    /** Writes a picture of the view; the path ends in ".jpg". Whether that works decides nothing: without it the archive
     * lacks the picture. May be empty. */
    CWriter writePicture;
};

/** The archive's file name beside the page: the model's name with all its extensions and ".zip" behind, "cube.3ds.zip".
 * Where another file has that name, or a link, or a file of the model, it is "cube.3ds-2.zip" and so on; an archive that
 * an earlier export made is replaced. scene is the one that is shown. The answer stays the same until the archive is
 * written, so that page and archive agree. */
[[nodiscard]] CResult<std::string> NameFor(const std::string& page, const std::string& modelFileName,
                                           const CPreparedScene& scene);

/** Packs the scene as "cube.3ds" (the model's name with the extension "3ds"), the pictures that faces show as they were
 * found, under the names that the packed scene has for them, and the view as "preview.jpg". Written in one step to
 * NameFor. The link of a page that was just exported to `page` leads there. */
[[nodiscard]] CStatus Make(const std::string& page, const std::string& modelFileName,
                           const CPreparedScene& prepared, const CContent& content);

}  // namespace download_archive
