// SPDX-License-Identifier: MIT
#pragma once

#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "model/read_obj/CObjConv3ds.h"
#include "model/scene/lib3ds_list.h"

/** The beginning of many an OBJ file. */
inline const std::string kSquare = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";

/** What an OBJ file became. */
struct CConverted {
    CLib3dsFilePtr file;
    std::vector<CSceneNote> notes;
    std::string error;

    [[nodiscard]] std::vector<Lib3dsMesh*> Meshes() const { return ListOf(file->meshes); }
    [[nodiscard]] std::vector<Lib3dsMaterial*> Materials() const { return ListOf(file->materials); }
    [[nodiscard]] bool HasNote(std::string_view text) const {
        return std::any_of(notes.begin(), notes.end(), [&](const CSceneNote& n) { return n.Text() == text; });
    }
};

/** Of texts in memory. */
inline CConverted Convert(std::string_view obj, std::string_view mtl = {}) {
    CConverted result;
    CResult<CLib3dsFilePtr> file = CObjConv3ds::ConvertText(obj, mtl, result.notes);
    if (file) {
        result.file = std::move(file).Value();
    } else {
        result.error = file.Error().message;
    }
    return result;
}
