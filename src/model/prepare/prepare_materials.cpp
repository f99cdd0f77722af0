// SPDX-License-Identifier: MIT
#include "model/prepare/prepare_materials.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <numbers>
#include <unordered_map>

#include "base/jobs/parallel_for.h"
#include "base/text/lng.h"
#include "model/prepare/prepare_scene.h"
#include "model/scene/CNoteList.h"
#include "model/scene/CScene.h"
#include "picture/image_codec.h"

namespace {
CVec3 Color(const float* rgb) {
    return {rgb[0], rgb[1], rgb[2]};
}

/** Gives every picture that is named one place in the list of textures. */
class CTextureList {
  public:
    explicit CTextureList(std::vector<CPreparedTexture>& textures) : m_textures(textures) {}

    int IndexOf(const char* name) {
        if (!name[0]) return -1;
        const auto [place, isNew] = m_indexOfName.emplace(name, static_cast<int>(m_textures.size()));
        if (isNew) m_textures.push_back({name, {}, {}, false});
        return place->second;
    }

  private:
    std::vector<CPreparedTexture>& m_textures;
    std::unordered_map<std::string, int> m_indexOfName;
};

CPreparedMap PrepareMap(const Lib3dsTextureMap& map, CTextureList& textures) {
    CPreparedMap result;
    result.texture = textures.IndexOf(map.name);
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
    return result;
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

CPreparedMaterial PrepareMaterial(const Lib3dsMaterial& material, CTextureList& textures) {
    CPreparedMaterial result;
    result.name = material.name;
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
    result.twoSided = material.two_sided != 0;
    result.wire = material.use_wire != 0;
    result.wireSizePx = std::max(material.wire_size, 1.0f);
    result.additive = material.additive != 0;
    result.texture = PrepareMap(material.texture1_map, textures);
    result.texture2 = PrepareMap(material.texture2_map, textures);
    result.opacity = PrepareMap(material.opacity_map, textures);
    result.specularMap = PrepareMap(material.specular_map, textures);
    result.shininessMap = PrepareMap(material.shininess_map, textures);
    result.selfIlluminationMap = PrepareMap(material.self_illum_map, textures);
    result.bump = PrepareMap(material.bump_map, textures);
    result.reflection = PrepareMap(material.reflection_map, textures);
    return result;
}

CResult<CImage> LoadImage(const CTextureHit& hit, const std::string& reference) {
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
        prepared.materials.push_back(PrepareMaterial(*material, textures));
    }
    prepared.materials.emplace_back();
}

void LoadTextures(const CScene& scene, const CPrepareOptions& options, CPreparedScene& prepared) {
    std::vector<CSceneNote> problems(prepared.textures.size());
    ParallelFor(prepared.textures.size(), options.threads, [&](std::size_t i) {
        if (options.IsStopped()) return;
        CPreparedTexture& texture = prepared.textures[i];
        const std::string name = CNoteList::Printable(texture.reference);
        const std::optional<CTextureHit> hit = scene.Textures().Find(texture.reference);
        if (!hit) {
            problems[i] = {CSceneNote::EKind::Missing, lng::Mark("Texture not found"), name};
            return;
        }
        CResult<CImage> image = LoadImage(*hit, texture.reference);
        if (!image) {
            problems[i] = {CSceneNote::EKind::Missing, lng::Mark("Texture not readable"), name,
                           image.Error().message};
            return;
        }
        texture.foundAt = hit->foundAt;
        texture.image = std::move(image).Value();
        options.Spend(texture.image.rgba.size());
        texture.hasTranslucency = HasTranslucency(texture.image);
    });
    for (CSceneNote& problem : problems) {
        if (*problem.what != '\0') prepared.notes.push_back(std::move(problem));
    }
}

void ReplaceBlackWithoutPicture(CPreparedScene& prepared) {
    for (CPreparedMaterial& material : prepared.materials) {
        const CPreparedMap& map = material.texture;
        const bool missing =
            map.HasEffect() && prepared.textures[static_cast<std::size_t>(map.texture)].image.IsEmpty();
        const CVec3 brightest{std::max(material.diffuse.x, material.ambient.x),
                              std::max(material.diffuse.y, material.ambient.y),
                              std::max(material.diffuse.z, material.ambient.z)};
        if (!missing || std::max({brightest.x, brightest.y, brightest.z}) > 0.04f) continue;
        material.diffuse = material.ambient = CPreparedMaterial{}.diffuse;
        prepared.notes.push_back({CSceneNote::EKind::Missing,
                                  lng::Mark("Without its picture this material would be black and is grey"),
                                  CNoteList::Printable(material.name)});
    }
}

void DecideBlending(CPreparedScene& prepared) {
    const auto isLoaded = [&](const CPreparedMap& map) {
        return map.HasEffect() && !prepared.textures[static_cast<std::size_t>(map.texture)].image.IsEmpty();
    };
    for (CPreparedMaterial& material : prepared.materials) {
        const CPreparedMap& map = material.texture;
        const bool seesThrough = isLoaded(map) && map.AlphaIsOpacity() &&
                                 prepared.textures[static_cast<std::size_t>(map.texture)].hasTranslucency;
        material.needsBlending =
            material.transparency > 0 || material.additive || isLoaded(material.opacity) || seesThrough;
    }
}
