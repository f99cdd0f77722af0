// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "model/scene/CScene.h"
#include "model/scene/CSceneNote.h"

struct Lib3dsFile;

/** Makes a 3DS scene of an OBJ file and the MTL files that it names: beside it, below its folder, or where
 * "../" leads from there.
 *
 * - Each group (or object) becomes a mesh, several where it holds more points or faces than the 3DS format
 *   allows. Names are unique. There are no nodes: a scene without them is drawn straight from its meshes.
 * - OBJ files are mostly made with +Y up and carry no sign of it, so (x, y, z) becomes (x, -z, y).
 * - Polygons are cut into triangles, corners with several texture coordinates into several points.
 * - Points and lines, and the vertices of a file that has nothing else, become small solids; see
 *   MakePointsAndLinesSolid. A note tells how many.
 * - A 3DS scene has smoothing groups in place of normals. The file's own groups are kept where it has two or
 *   more; else they are derived from its normals; without normals an "s" line decides, and without one the
 *   angle between faces. A hard edge that ends inside a smooth surface is lost.
 * - Materials: see MakeMtlMaterial. A material that is used but not defined is grey.
 * - Faces with invalid indices or coordinates are left out; notes tell what was left out.
 *
 * Whatever the bytes are (at most 2 GB), memory stays below some 20 times the file's size plus 50 MB, and the
 * time grows with the bytes. Paths are UTF-8 or wide. */
class CObjConv3ds {
  public:
    /** The scene, for the caller to free with lib3ds_file_free; null on any failure. */
    [[nodiscard]] static Lib3dsFile* Convert(const wchar_t* path);
    [[nodiscard]] static Lib3dsFile* Convert(const std::wstring& path) { return Convert(path.c_str()); }
    [[nodiscard]] static Lib3dsFile* Convert(std::string_view path);

    /** Convert with the reason of a failure. On success notes is replaced, and libraries, which may be null,
     * gets the paths of the MTL files that were read. */
    [[nodiscard]] static CResult<CLib3dsFilePtr> ConvertResult(std::string_view path,
                                                               std::vector<CSceneNote>& notes,
                                                               std::vector<std::string>* libraries = nullptr);

    /** Converts texts in memory. mtl stands for all MTL files; mtllib lines are not followed. */
    [[nodiscard]] static CResult<CLib3dsFilePtr> ConvertText(std::string_view obj, std::string_view mtl,
                                                             std::vector<CSceneNote>& notes);
};
