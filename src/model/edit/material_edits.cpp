// SPDX-License-Identifier: MIT
#include "model/edit/material_edits.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <utility>

#include "files/file_util_ex.h"
#include "model/scene/CScene.h"
#include "model/scene/lib3ds_copies.h"
#include "model/scene/lib3ds_name.h"
#include "model/textures/CLib3dsMatUtil.h"

namespace material_edits {
namespace {

constexpr std::uint64_t kMaxTextureBytes = 512ULL << 20;

float Clamped(float value) {
    return std::clamp(value, 0.0f, 1.0f);
}

float Brightness(const float (&color)[4]) {
    return 0.3f * color[0] + 0.59f * color[1] + 0.11f * color[2];
}

bool SceneNames(const CScene& scene, std::string_view name) {
    for (Lib3dsMaterial* m = scene.Header()->materials; m != nullptr; m = m->next) {
        for (const Lib3dsTextureMap* map : CLib3dsMatUtil::MapsOf(*m)) {
            if (name == map->name) return true;
        }
    }
    return false;
}

bool SameFile(const std::string& a, const std::string& b) {
    std::error_code ignored;  // an archive entry is no file, and not the same as one
    return std::filesystem::equivalent(a, b, ignored);
}

/** name with a number before its extension, cut to what a material holds. */
std::string Numbered(const std::string& name, unsigned number) {
    const std::string ext = file_util_ex::GetFileExt(name);
    const std::string suffix =
        (number > 1 ? "#" + std::to_string(number) : "") + (ext.empty() ? "" : "." + ext);
    return lib3ds_name::WithSuffix(file_util_ex::GetFileNameWithPath(name), suffix);
}

/** A name for a picture that nothing else in the scene is called. */
std::string FreeTextureName(const CScene& scene, const std::string& name) {
    std::string candidate = Numbered(name, 1);
    for (unsigned n = 2; SceneNames(scene, candidate) || scene.Textures().Find(candidate); ++n) {
        candidate = Numbered(name, n);
    }
    return candidate;
}

void AddToScene(CScene& scene, const std::string& name, std::vector<std::byte> bytes) {
    CTextureLocator textures = scene.Textures();
    textures.Add({name, std::move(bytes)});
    scene.SetTextures(std::move(textures));
}

}  // namespace

void SetColor(Lib3dsMaterial& material, CVec3 color) {
    const float diffuse = Brightness(material.diffuse);
    const float ratio = diffuse > 0 ? Clamped(Brightness(material.ambient) / diffuse) : 1.0f;
    const std::array<float, 3> rgb{Clamped(color.x), Clamped(color.y), Clamped(color.z)};
    for (std::size_t i = 0; i < rgb.size(); ++i) {
        material.diffuse[i] = rgb[i];
        material.ambient[i] = rgb[i] * ratio;
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

CResult<std::string> AddTextureFile(CScene& scene, std::string_view path) {
    const std::string file(path);
    std::string name = Numbered(file_util_ex::GetFileName(file), 1);
    const auto known = scene.Textures().Find(name);
    if (known && known->data == nullptr && SameFile(known->foundAt, file)) return name;
    auto bytes = file_util_ex::ReadWholeFile(file, kMaxTextureBytes);
    if (!bytes) return bytes.Error();
    if (known && known->data != nullptr && *known->data == bytes.Value()) return name;
    name = FreeTextureName(scene, name);
    AddToScene(scene, name, std::move(bytes).Value());
    return name;
}

void AdoptTextures(CScene& scene, const CScene& from, Lib3dsMaterial& material) {
    for (Lib3dsTextureMap* map : CLib3dsMatUtil::MapsOf(material)) {
        auto& name = map->name;
        if (name[0] == '\0') continue;
        const auto hit = from.Textures().Find(name);
        if (!hit) continue;
        const auto known = scene.Textures().Find(name);
        if (known && hit->data == nullptr && known->data == nullptr && SameFile(known->foundAt, hit->foundAt))
            continue;
        std::vector<std::byte> bytes;
        if (hit->data != nullptr) {
            bytes = *hit->data;
        } else if (auto read = file_util_ex::ReadWholeFile(hit->foundAt, kMaxTextureBytes)) {
            bytes = std::move(read).Value();
        }
        if (bytes.empty() || (known && known->data != nullptr && *known->data == bytes)) continue;
        const std::string fresh = FreeTextureName(scene, name);
        AddToScene(scene, fresh, std::move(bytes));
        CopyName(name, fresh);
    }
}

}  // namespace material_edits
