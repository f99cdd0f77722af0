// SPDX-License-Identifier: MIT
#include "model/prepare/prepare_materials.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <algorithm>
#include <numbers>

#include "base/name_hash.h"
#include "base/text/lng.h"
#include "model/scene/CNoteList.h"
#include "model/scene/CScene.h"
#include "model/scene/scene_budget.h"

namespace {
CVec3 Color(const float* rgb) {
    return {rgb[0], rgb[1], rgb[2]};
}

/** Gives every picture that is named one place in the list of textures. */
class CTextureList {
  public:
    explicit CTextureList(std::vector<CPreparedTexture>& textures) : m_textures(textures) {}

    /** -1 for a new name when there are as many as a scene may have. */
    int IndexOf(const char* name) {
        if (const auto found = m_indexOfName.find(std::string_view(name)); found != m_indexOfName.end())
            return found->second;
        if (m_textures.size() >= scene_budget::kPictureNames) {
            m_isFull = true;
            return -1;
        }
        const auto index = static_cast<int>(m_textures.size());
        m_indexOfName.emplace(name, index);
        m_textures.push_back({name, {}, {}, false});
        return index;
    }
    /** True once there were more names. */
    [[nodiscard]] bool IsFull() const { return m_isFull; }

  private:
    std::vector<CPreparedTexture>& m_textures;
    bool m_isFull = false;
    CNameMap<int> m_indexOfName;
};

void SetMapValues(const Lib3dsTextureMap& map, CPreparedMap& result) {
    result.amount = map.percent;
    result.scale = {map.scale[0], map.scale[1]};
    result.offset = {map.offset[0], map.offset[1]};
    result.rotationDeg = map.rotation;
    result.tile = (map.flags & LIB3DS_NO_TILE) == 0;
    result.decal = (map.flags & LIB3DS_DECALE) != 0;
    result.mirror = (map.flags & LIB3DS_MIRROR) != 0;
    result.negative = (map.flags & LIB3DS_NEGATE) != 0;
    result.alphaSource = (map.flags & LIB3DS_ALPHA_SOURCE) != 0;
    result.ignoreAlpha = (map.flags & LIB3DS_IGNORE_ALPHA) != 0;
}

EShading Shading(const Lib3dsMaterial& material) {
    switch (material.shading) {
        case LIB3DS_WIRE_FRAME:
            return EShading::Wire;
        case LIB3DS_FLAT:
            return EShading::Flat;
        case LIB3DS_GOURAUD:
            return EShading::Gouraud;
        case LIB3DS_METAL:
            return EShading::Metal;
        default:
            return EShading::Phong;
    }
}

/** Both forms of each map that is prepared. */
struct CMapPlace {
    Lib3dsTextureMap Lib3dsMaterial::*file;
    CPreparedMap CPreparedMaterial::*prepared;
};
constexpr CMapPlace kMaps[] = {
    {&Lib3dsMaterial::texture1_map, &CPreparedMaterial::texture},
    {&Lib3dsMaterial::texture2_map, &CPreparedMaterial::texture2},
    {&Lib3dsMaterial::opacity_map, &CPreparedMaterial::opacity},
    {&Lib3dsMaterial::specular_map, &CPreparedMaterial::specularMap},
    {&Lib3dsMaterial::shininess_map, &CPreparedMaterial::shininessMap},
    {&Lib3dsMaterial::self_illum_map, &CPreparedMaterial::selfIlluminationMap},
    {&Lib3dsMaterial::bump_map, &CPreparedMaterial::bump},
    {&Lib3dsMaterial::reflection_map, &CPreparedMaterial::reflection},
};
}  // namespace

void SetMaterialValues(const Lib3dsMaterial& material, CPreparedMaterial& result) {
    result.ambient = Color(material.ambient);
    result.diffuse = Color(material.diffuse);
    result.specular = Color(material.specular);
    result.shininess = material.shininess;
    result.shininessStrength = material.shin_strength;
    result.transparency = material.transparency;
    // Old files have the flag alone, which means all of it.
    result.selfIllumination = material.self_ilpct > 0 ? material.self_ilpct
                              : material.self_illum   ? 1.0f
                                                      : 0.0f;
    result.shading = Shading(material);
    result.wire = material.use_wire != 0;
    result.wireSizePx = std::max(material.wire_size, 1.0f);
    result.additive = material.additive != 0;
    for (const CMapPlace& map : kMaps) SetMapValues(material.*map.file, result.*map.prepared);
}

CPreparedMaterial PrepareMaterial(const Lib3dsMaterial& material, const CTextureIndexOf& indexOf) {
    CPreparedMaterial result;
    result.name = material.name;
    result.twoSided = material.two_sided != 0;
    SetMaterialValues(material, result);
    for (const CMapPlace& map : kMaps) {
        const auto& name = (material.*map.file).name;
        (result.*map.prepared).texture = name[0] == 0 ? -1 : indexOf(name);
    }
    return result;
}

bool UsesTexCoords(const CPreparedMaterial& m) {
    return m.texture.HasEffect() || m.texture2.HasEffect() || m.opacity.HasEffect() ||
           m.specularMap.HasEffect() || m.shininessMap.HasEffect() || m.selfIlluminationMap.HasEffect() ||
           m.bump.HasEffect();
}

std::array<float, 6> CPreparedMap::UvTransform() const {
    // 3D Studio scales and turns the map about its middle, then moves it.
    const float angle = rotationDeg * std::numbers::pi_v<float> / 180.0f;
    const float c = std::cos(angle), s = std::sin(angle);
    const float a = c * scale.x, b = s * scale.x, d = -s * scale.y, e = c * scale.y;
    // s = a (u - .5 - ou) + b (v - .5 - ov) + .5
    const float u0 = 0.5f + offset.x, v0 = 0.5f + offset.y;
    return {a, d, b, e, 0.5f - a * u0 - b * v0, 0.5f - d * u0 - e * v0};
}

void PrepareMaterials(const CScene& scene, CPreparedScene& prepared) {
    CTextureList textures(prepared.textures);
    for (const Lib3dsMaterial* material = scene.Header()->materials; material; material = material->next) {
        prepared.materials.push_back(
            PrepareMaterial(*material, [&](const char* name) { return textures.IndexOf(name); }));
    }
    prepared.materials.emplace_back();
    if (textures.IsFull())
        prepared.notes.push_back(
            {CSceneNote::EKind::Limited,
             lng::Mark("There are more than 20,000 names of pictures; the rest is not looked for")});
}

void ForEachMap(CPreparedMaterial& material, const std::function<void(CPreparedMap&)>& visit) {
    for (const CMapPlace& map : kMaps) visit(material.*map.prepared);
}

namespace {
const CPreparedTexture* PictureOf(const CPreparedMap& map, const std::vector<CPreparedTexture>& textures) {
    return map.HasEffect() ? &textures[static_cast<std::size_t>(map.texture)] : nullptr;
}
}  // namespace

bool ReplaceBlackWithoutPicture(const std::vector<CPreparedTexture>& textures, CPreparedMaterial& material) {
    const CPreparedTexture* picture = PictureOf(material.texture, textures);
    const CVec3 brightest{std::max(material.diffuse.x, material.ambient.x),
                          std::max(material.diffuse.y, material.ambient.y),
                          std::max(material.diffuse.z, material.ambient.z)};
    if (picture == nullptr || !picture->image.IsEmpty()) return false;
    if (std::max({brightest.x, brightest.y, brightest.z}) > 0.04f) return false;
    material.diffuse = material.ambient = CPreparedMaterial{}.diffuse;
    return true;
}

void DecideBlending(const std::vector<CPreparedTexture>& textures, CPreparedMaterial& material) {
    const CPreparedTexture* picture = PictureOf(material.texture, textures);
    const CPreparedTexture* opacity = PictureOf(material.opacity, textures);
    const bool seesThrough = picture != nullptr && !picture->image.IsEmpty() && picture->hasTranslucency &&
                             material.texture.AlphaIsOpacity();
    material.needsBlending = material.transparency > 0 || material.additive || seesThrough ||
                             (opacity != nullptr && !opacity->image.IsEmpty());
}

void DecideLooks(bool picturesAreLoaded, CPreparedScene& prepared) {
    CNoteList notes;
    for (CPreparedMaterial& material : prepared.materials) {
        if (picturesAreLoaded && ReplaceBlackWithoutPicture(prepared.textures, material))
            notes.Missing("Without its picture this material would be black; it is grey instead",
                          CNoteList::Printable(material.name));
        DecideBlending(prepared.textures, material);
    }
    for (CSceneNote& note : notes.Take()) prepared.notes.push_back(std::move(note));
}
