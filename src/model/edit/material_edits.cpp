// SPDX-License-Identifier: MIT
#include "model/edit/material_edits.h"

#include <lib3ds/material.h>

#include <algorithm>
#include <array>

#include "files/file_util_ex.h"
#include "model/scene/lib3ds_name.h"

namespace material_edits {
namespace {

float Clamped(float value) {
    return std::clamp(value, 0.0f, 1.0f);
}

float Brightness(const float (&color)[4]) {
    return 0.3f * color[0] + 0.59f * color[1] + 0.11f * color[2];
}

}  // namespace

float AmbientShare(const Lib3dsMaterial& material) {
    const float diffuse = Brightness(material.diffuse);
    return diffuse > 0 ? Clamped(Brightness(material.ambient) / diffuse) : 1.0f;
}

void SetColor(Lib3dsMaterial& material, CVec3 color, float ambientShare) {
    const std::array<float, 3> rgb{Clamped(color.x), Clamped(color.y), Clamped(color.z)};
    for (std::size_t i = 0; i < rgb.size(); ++i) {
        material.diffuse[i] = rgb[i];
        material.ambient[i] = rgb[i] * ambientShare;
    }
    material.texture1_map.percent = 0;
    material.texture2_map.percent = 0;
}

void SetShininess(Lib3dsMaterial& material, float value) {
    material.shininess = Clamped(value);
    material.shin_strength = Clamped(value);
}

void SetTransparency(Lib3dsMaterial& material, float value) {
    material.transparency = Clamped(value);
}

void SetTexture(Lib3dsMaterial& material, std::string_view textureName) {
    Lib3dsTextureMap& map = material.texture1_map;
    if (map.name[0] == '\0') {
        map.flags &= ~static_cast<Lib3dsDword>(LIB3DS_NO_TILE | LIB3DS_DECALE);
        map.scale[0] = map.scale[1] = 1;
        map.offset[0] = map.offset[1] = map.rotation = 0;
    }
    map.percent = 1;
    CopyName(map.name, textureName);
}

std::string TextureName(const std::string& fileName, unsigned number) {
    const std::string ext = file_util_ex::GetFileExt(fileName);
    const std::string suffix =
        (number > 1 ? "#" + std::to_string(number) : "") + (ext.empty() ? "" : "." + ext);
    return lib3ds_name::WithSuffix(file_util_ex::GetFileNameWithPath(fileName), suffix);
}

}  // namespace material_edits
