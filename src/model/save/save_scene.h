// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "base/CResult.h"
#include "picture/CImage.h"

struct Lib3dsFile;
class CAtomicFile;

/** Writes the scene that an engine holds to a .3ds path (UTF-8), replaced in one step. */
using CSceneWriter = std::function<CStatus(std::string_view path)>;

/** Packs a scene with its textures and a picture of the view into a zip archive, replaced in one step.
 *
 * The archive holds the scene under the archive's own name with the extension "3ds", every texture that a face shows
 * as a JPEG file (quality 95, a JPEG file as it is), and "preview.png". A texture with transparent parts, which JPEG
 * cannot hold, is there once more as NAME.jpg.png, which this program takes instead. Textures that are not found or
 * cannot be read are left out.
 *
 * The textures' names are those that the materials have, and the packed scene's materials have the same: in UTF-8, one
 * for each picture that was found, however many names it had, and different ones for pictures of one name in several
 * folders. So other programs find them, too. The scene in memory keeps its names; they end in ".jpg", see
 * lib3ds_util::change_textures_ext. */
[[nodiscard]] CStatus SaveSceneZip(Lib3dsFile* scene, const CSceneWriter& write, const CImage& picture,
                                   std::string_view archivePath);

/** What else is packed with a scene, and how. */
struct CPacking {
    std::string sceneName;  ///< the scene's file name in the archive
    bool asFound =
        false;  ///< textures byte by byte, with the endings that they have; else as SaveSceneZip has them
    std::string viewName;  ///< a picture of the view; left out where viewWriter fails
    CSceneWriter viewWriter;
    std::string comment;  ///< the archive's
};

/** SaveSceneZip in general, into a file that was made for it. */
[[nodiscard]] CStatus PackScene(Lib3dsFile* scene, const CSceneWriter& write, const CPacking& packing,
                                CAtomicFile archive);
