// SPDX-License-Identifier: MIT
#include "model/prepare/prepare_materials.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <algorithm>
#include <numbers>

#include "base/jobs/parallel_for.h"
#include "base/name_hash.h"
#include "base/text/lng.h"
#include "model/prepare/prepare_scene.h"
#include "model/scene/CNoteList.h"
#include "model/scene/CScene.h"
#include "picture/decode/image_codec.h"

namespace {
CVec3 Color(const float* rgb) {
    return {rgb[0], rgb[1], rgb[2]};
}

/** Gives every picture that is named one place in the list of textures. */
class CTextureList {
  public:
    explicit CTextureList(std::vector<CPreparedTexture>& textures) : m_textures(textures) {}

    int IndexOf(const char* name) {
        const auto [place, isNew] = m_indexOfName.emplace(name, static_cast<int>(m_textures.size()));
        if (isNew) m_textures.push_back({name, {}, {}, false});
        return place->second;
    }

  private:
    std::vector<CPreparedTexture>& m_textures;
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

CResult<image_codec::CDecodedImage> LoadImage(const CTextureHit& hit, const std::string& reference) {
    return hit.data ? image_codec::DecodeImage(*hit.data, reference)
                    : image_codec::ReadImageFile(hit.foundAt);
}

bool HasTranslucency(const CImage& image) {
    for (std::size_t i = 3; i < image.rgba.size(); i += 4) {
        if (image.rgba[i] != 255) return true;
    }
    return false;
}
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
}

std::optional<CSceneNote> LoadTexture(const CTextureLocator& textures, CPreparedTexture& texture) {
    const std::string name = CNoteList::Printable(texture.reference);
    const std::optional<CTextureHit> hit = textures.Find(texture.reference);
    if (!hit) return CSceneNote{CSceneNote::EKind::Missing, lng::Mark("Texture not found"), name};
    CResult<image_codec::CDecodedImage> image = LoadImage(*hit, texture.reference);
    if (!image) {
        return CSceneNote{CSceneNote::EKind::Missing, lng::Mark("Texture not readable"), name,
                          image.Error().message};
    }
    texture.foundAt = hit->foundAt;
    SetPicture(std::move(image).Value().image, texture);
    return std::nullopt;
}

void SetPicture(CImage image, CPreparedTexture& texture) {
    texture.image = std::move(image);
    texture.hasTranslucency = HasTranslucency(texture.image);
}

void LoadTextures(const CScene& scene, const CPrepareOptions& options, CPreparedScene& prepared) {
    std::vector<std::optional<CSceneNote>> problems(prepared.textures.size());
    ParallelFor(prepared.textures.size(), options.threads, [&](std::size_t i) {
        if (options.IsStopped()) return;
        problems[i] = LoadTexture(scene.Textures(), prepared.textures[i]);
        options.Spend(prepared.textures[i].image.rgba.size());
    });
    for (std::optional<CSceneNote>& problem : problems) {
        if (problem) prepared.notes.push_back(std::move(*problem));
    }
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
    for (CPreparedMaterial& material : prepared.materials) {
        if (picturesAreLoaded && ReplaceBlackWithoutPicture(prepared.textures, material)) {
            prepared.notes.push_back(
                {CSceneNote::EKind::Missing,
                 lng::Mark("Without its picture this material would be black and is grey"),
                 CNoteList::Printable(material.name)});
        }
        DecideBlending(prepared.textures, material);
    }
}
