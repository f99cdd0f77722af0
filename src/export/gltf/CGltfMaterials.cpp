// SPDX-License-Identifier: MIT
#include "export/gltf/CGltfMaterials.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "export/gltf/glb/CGlbFile.h"
#include "export/gltf/glb/CJsonText.h"
#include "export/gltf/parts/gltf_values.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/material_kinds.h"
#include "model/prepare/prepare_materials.h"

namespace {

using gltf_values::Linear;
using gltf_values::Unit;

/** B. Karis, "Specular BRDF Reference": a Blinn exponent n is 2 / alpha^2 - 2, and glTF's roughness is the square root
 * of alpha. */
float RoughnessOf(float shininess) {
    return std::pow(2 / (std::exp2(10 * Unit(shininess)) + 2), 0.25f);
}

/** From TEXCOORD_0 to the picture, both v downwards; the file's v goes upwards in both. */
std::array<float, 6> UvOf(const CPreparedMap& map) {
    const std::array<float, 6> t = map.UvTransform();
    return {t[0], -t[1], -t[2], t[3], t[2] + t[4], 1 - t[3] - t[5]};
}
constexpr std::array<float, 6> kSameUv{1, 0, 0, 1, 0, 0};

EGltfWrap WrapOf(const CPreparedMap& map) {
    if (!map.tile) return EGltfWrap::Clamp;
    return map.mirror ? EGltfWrap::Mirror : EGltfWrap::Repeat;
}

const char* NameOf(EShading shading) {
    constexpr const char* kNames[] = {"wire", "flat", "gouraud", "phong", "metal"};
    return kNames[static_cast<std::size_t>(shading)];
}

void WriteColour(CJsonText& json, const char* key, CVec3 c) {
    const std::array<float, 3> values{Unit(c.x), Unit(c.y), Unit(c.z)};
    json.Member(key, std::span<const float>(values));
}

void WriteIf(CJsonText& json, const char* key, bool value) {
    if (value) json.Member(key, true);
}

/** KHR_texture_transform, which first scales, then turns, then moves: the nearest to the map's own. */
void WritePlacing(CJsonText& json, const std::array<float, 6>& uv) {
    const float scaleX = std::hypot(uv[0], uv[1]);
    const float turn = scaleX > 0 ? std::atan2(-uv[1], uv[0]) : 0.0f;
    const std::array<float, 2> offset{uv[4], uv[5]};
    const std::array<float, 2> scale{scaleX, uv[2] * std::sin(turn) + uv[3] * std::cos(turn)};
    json.Key("extensions").BeginObject().Key("KHR_texture_transform").BeginObject();
    json.Member("offset", std::span<const float>(offset));
    if (turn != 0) json.Member("rotation", turn);
    json.Member("scale", std::span<const float>(scale)).EndObject().EndObject();
}

}  // namespace

int CGltfMaterials::Use(std::uint32_t material, bool hasTexCoords) {
    const CPreparedMaterial& of = m_scene.materials[material];
    hasTexCoords = hasTexCoords || !UsesTexCoords(of);
    const auto [place, isNew] =
        m_known.try_emplace({material, hasTexCoords}, static_cast<int>(m_used.size()));
    if (isNew) m_used.push_back({material, hasTexCoords, m_names.Take(of.name)});
    return place->second;
}

bool CGltfMaterials::Has(const CPreparedMap& map, bool hasTexCoords) const {
    return hasTexCoords && map.HasEffect() && m_pictures.Has(map.texture);
}

bool CGltfMaterials::CanJoin(const CPreparedMap& texture, const CPreparedMap& opacity) const {
    const CImage& colour = m_scene.textures[static_cast<std::size_t>(texture.texture)].image;
    const CImage& alpha = m_scene.textures[static_cast<std::size_t>(opacity.texture)].image;
    return texture.amount >= 1 && !texture.decal && WrapOf(texture) == WrapOf(opacity) &&
           texture.UvTransform() == opacity.UvTransform() && colour.width == alpha.width &&
           colour.height == alpha.height;
}

CGltfMaterials::CBase CGltfMaterials::BaseOf(const CPreparedMaterial& material, bool hasTexCoords) {
    CBase base;
    const CPreparedMap &texture = material.texture, &opacity = material.opacity;
    const bool hasTexture = Has(texture, hasTexCoords);
    if (hasTexture) {
        base.map = &texture;
        base.picture.colour = texture.texture;
        base.picture.negative = texture.negative;
    }
    if (!Has(opacity, hasTexCoords) || opacity.amount < 1) return base;
    if (hasTexture && !CanJoin(texture, opacity)) return base;
    CGltfPicture joined = base.picture;
    // One picture with alpha for both is right as it is.
    if (!hasTexture || texture.texture != opacity.texture || !opacity.alphaSource || opacity.negative) {
        joined.opacity = opacity.texture;
        joined.opacityNegative = opacity.negative;
        joined.opacityByAlpha = opacity.alphaSource;
        if (hasTexture && !m_pictures.MayJoin(joined)) return base;
    }
    base.picture = joined;
    base.hasOpacity = true;
    base.map = hasTexture ? &texture : &opacity;
    return base;
}

void CGltfMaterials::WriteTexture(CJsonText& json, const char* key, const CGltfPicture& picture,
                                  const CPreparedMap& map) {
    json.Key(key).BeginObject().Member("index", m_pictures.Use(picture, WrapOf(map)));
    if (const std::array<float, 6> uv = UvOf(map); uv != kSameUv) {
        WritePlacing(json, uv);
        m_file.UseExtension("KHR_texture_transform");
    }
    json.EndObject();
}

void CGltfMaterials::WriteBase(CJsonText& json, const CPreparedMaterial& material, const CBase& base) {
    const bool isTextured = base.picture.colour >= 0;
    const CVec3 c = isTextured ? CVec3{1, 1, 1} : material.diffuse;
    const bool overruled = base.hasOpacity || (material.opacity.HasEffect() && material.opacity.amount >= 1);
    const float alpha = overruled ? 1 : 1 - Unit(material.transparency);
    const std::array<float, 4> factor{Linear(c.x), Linear(c.y), Linear(c.z), alpha};
    json.Key("pbrMetallicRoughness").BeginObject();
    json.Member("baseColorFactor", std::span<const float>(factor));
    if (base.map != nullptr) WriteTexture(json, "baseColorTexture", base.picture, *base.map);
    json.Member("metallicFactor", 0).Member("roughnessFactor", RoughnessOf(material.shininess)).EndObject();
}

void CGltfMaterials::WriteEmission(CJsonText& json, const CPreparedMaterial& material, const CBase& base,
                                   bool hasTexCoords) {
    const CPreparedMap& map = material.selfIlluminationMap;
    const bool isTextured = base.picture.colour >= 0;
    const float self = Unit(material.selfIllumination);
    CVec3 factor = isTextured ? CVec3{self, self, self} : material.diffuse * self;
    const bool hasMap = Has(map, hasTexCoords) && !isTextured;
    if (hasMap) factor = material.diffuse * Unit(map.amount);
    if (!(factor.x > 0 || factor.y > 0 || factor.z > 0)) return;
    if (hasMap)
        WriteTexture(json, "emissiveTexture", {map.texture, map.negative, -1, false, false}, map);
    else if (isTextured)
        WriteTexture(json, "emissiveTexture", base.picture, *base.map);
    const std::array<float, 3> linear{Linear(factor.x), Linear(factor.y), Linear(factor.z)};
    json.Member("emissiveFactor", std::span<const float>(linear));
}

void CGltfMaterials::WriteAlphaMode(CJsonText& json, const CPreparedMaterial& material, const CBase& base) {
    if (!IsBlended(material)) return;
    const bool byPicture = base.hasOpacity || (base.picture.colour >= 0 && material.texture.AlphaIsOpacity());
    const bool isCut = byPicture && MayBeSolid(material) && m_pictures.IsCutOut(base.picture);
    json.Member("alphaMode", isCut ? "MASK" : "BLEND");
}

/** How strong the highlight is: that of a usual surface is 4 % of the light, here a full one. */
void CGltfMaterials::WriteSpecular(CJsonText& json, const CPreparedMaterial& material) {
    const CVec3 c = material.specular;
    const float brightest = std::max({Unit(c.x), Unit(c.y), Unit(c.z)});
    const float strength = brightest * Unit(material.shininessStrength);
    m_file.UseExtension("KHR_materials_specular");
    json.Key("extensions").BeginObject().Key("KHR_materials_specular").BeginObject();
    if (strength < 1) json.Member("specularFactor", strength);
    if (strength > 0 && (c.x != c.y || c.y != c.z)) {
        const std::array<float, 3> colour{Linear(c.x / brightest), Linear(c.y / brightest),
                                          Linear(c.z / brightest)};
        json.Member("specularColorFactor", std::span<const float>(colour));
    }
    json.EndObject().EndObject();
}

void CGltfMaterials::WriteMaps(CJsonText& json, const CPreparedMaterial& material, const CBase& base,
                               bool hasTexCoords) {
    const bool shines = material.shininessStrength > 0;
    struct CEntry {
        const char* name;
        const CPreparedMap& map;
        bool counts;
    };
    const CEntry entries[] = {{"texture", material.texture, hasTexCoords},
                              {"texture2", material.texture2, hasTexCoords},
                              {"opacity", material.opacity, hasTexCoords},
                              {"specular", material.specularMap, hasTexCoords && shines},
                              {"shininess", material.shininessMap, hasTexCoords && shines},
                              {"selfIllumination", material.selfIlluminationMap, hasTexCoords},
                              {"bump", material.bump, hasTexCoords},
                              {"reflection", material.reflection, true}};
    const auto isThere = [&](const CEntry& entry) { return entry.counts && Has(entry.map, true); };
    if (std::none_of(std::begin(entries), std::end(entries), isThere)) return;
    json.Key("maps").BeginObject();
    for (const CEntry& entry : entries) {
        if (!isThere(entry)) continue;
        const CPreparedMap& map = entry.map;
        const bool isOpacity = &map == &material.opacity, isTexture = &map == &material.texture;
        const bool joins = base.hasOpacity && (isOpacity || (isTexture && base.picture.opacity >= 0));
        // The negative of a picture is made by who draws it; a joined one holds what counts already.
        const CGltfPicture picture =
            joins ? base.picture : CGltfPicture{map.texture, false, -1, false, false};
        json.Key(entry.name).BeginObject().Member("texture", m_pictures.Use(picture, WrapOf(map)));
        if (map.amount < 1) json.Member("amount", Unit(map.amount));
        if (const auto uv = UvOf(map); uv != kSameUv) json.Member("uv", std::span<const float>(uv));
        if (!map.tile) json.Member("tile", false);
        WriteIf(json, "decal", map.decal);
        WriteIf(json, "mirror", map.mirror);
        WriteIf(json, "negative", map.negative && !joins);
        WriteIf(json, "alphaSource", joins ? isOpacity : map.alphaSource);
        WriteIf(json, "ignoreAlpha", map.ignoreAlpha || (joins && isTexture));
        WriteIf(json, "alphaIsOpacity", isTexture && map.AlphaIsOpacity() && !joins);
        json.EndObject();
    }
    json.EndObject();
}

void CGltfMaterials::WriteExtras(CJsonText& json, const CPreparedMaterial& material, const CBase& base,
                                 bool hasTexCoords) {
    json.Key("extras").BeginObject().Key("orbivue").BeginObject();
    WriteColour(json, "ambient", material.ambient);
    WriteColour(json, "diffuse", material.diffuse);
    WriteColour(json, "specular", material.specular);
    json.Member("exponent", std::exp2(10 * Unit(material.shininess)));
    const auto number = [&](const char* key, float value) {
        if (value > 0) json.Member(key, Unit(value));
    };
    number("strength", material.shininessStrength);
    number("selfIllumination", material.selfIllumination);
    json.Member("opacity", 1 - Unit(material.transparency)).Member("shading", NameOf(material.shading));
    WriteIf(json, "twoSided", material.twoSided || m_options.doubleSided);
    if (IsWire(material)) {
        const float size = material.wireSizePx;
        json.Member("wire", true);
        json.Member("wireSizePx", std::isfinite(size) && size > 0 ? std::min(size, 64.0f) : 1.0f);
    }
    WriteIf(json, "additive", material.additive);
    WriteIf(json, "blend", IsBlended(material));
    WriteMaps(json, material, base, hasTexCoords);
    json.EndObject().EndObject();
}

void CGltfMaterials::WriteOne(CJsonText& json, const CUsed& used) {
    const CPreparedMaterial& material = m_scene.materials[used.material];
    const CBase base = BaseOf(material, used.hasTexCoords);
    json.BeginObject();
    if (!used.name.empty()) json.Member("name", used.name);
    WriteBase(json, material, base);
    WriteEmission(json, material, base, used.hasTexCoords);
    WriteAlphaMode(json, material, base);
    if (material.twoSided || m_options.doubleSided) json.Member("doubleSided", true);
    WriteSpecular(json, material);
    if (m_options.withExtras) WriteExtras(json, material, base, used.hasTexCoords);
    json.EndObject();
}

void CGltfMaterials::Write(CJsonText& json) {
    if (m_used.empty()) return;
    json.Key("materials").BeginArray();
    for (const CUsed& used : m_used) WriteOne(json, used);
    json.EndArray();
}
