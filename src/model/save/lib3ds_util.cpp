// SPDX-License-Identifier: MIT
#include "model/save/lib3ds_util.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <cstring>
#include <string>

#include "files/file_util_ex.h"
#include "model/textures/CLib3dsMatUtil.h"

namespace lib3ds_util {

void change_textures_ext(Lib3dsFile* file, std::string_view ext) {
    if (!file) return;
    for (Lib3dsMaterial* material = file->materials; material; material = material->next) {
        for (Lib3dsTextureMap* map : CLib3dsMatUtil::MapsOf(*material)) {
            const std::string name(map->name, strnlen(map->name, sizeof map->name));
            if (name.empty()) continue;
            const std::string renamed = file_util_ex::SetFileExt(name, ext);
            if (renamed.size() < sizeof map->name)
                std::memcpy(map->name, renamed.c_str(), renamed.size() + 1);
        }
    }
}

}  // namespace lib3ds_util
