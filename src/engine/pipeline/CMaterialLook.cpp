// SPDX-License-Identifier: MIT
#include "engine/pipeline/CMaterialLook.h"

#include <algorithm>
#include <cmath>

#include "engine/pipeline/CTextureSet.h"
#include "model/prepare/CPreparedScene.h"

namespace {

std::uint32_t UsableMaps(const CPreparedMaterial& material, const CTextureSet& textures, bool hasTexCoords) {
    std::uint32_t result = 0;
    const std::array<const CPreparedMap*, kMapKinds> maps = MapsOf(material);
    for (unsigned i = 0; i < maps.size(); ++i) {
        const auto kind = static_cast<EMapKind>(i);
        const bool placed = hasTexCoords || kind == EMapKind::Reflection;
        if (placed && maps[i]->HasEffect() && textures.Has(kind, *maps[i])) result |= 1u << i;
    }
    return result;
}

CVec3 Times(CVec3 a, CVec3 b) {
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}

}  // namespace

std::array<const CPreparedMap*, kMapKinds> MapsOf(const CPreparedMaterial& material) {
    return {&material.texture,     &material.texture2,     &material.opacity,
            &material.specularMap, &material.shininessMap, &material.selfIlluminationMap,
            &material.bump,        &material.reflection};
}

CMaterialLook CMaterialLook::From(const CPreparedMaterial& material, const CTextureSet& textures,
                                  bool hasTexCoords, bool asLines) {
    CMaterialLook look;
    look.diffuse = material.diffuse;
    look.ambient = material.ambient;
    look.specular = material.specular * material.shininessStrength;
    look.exponent = std::exp2(10 * std::clamp(material.shininess, 0.0f, 1.0f));
    look.selfIllumination = material.selfIllumination;
    look.opacity = 1 - material.transparency;

    CShaderVariant& surface = look.surface;
    surface.maps = UsableMaps(material, textures, hasTexCoords);
    surface.specular = material.shininessStrength > 0;
    // Flat shading needs the normal of a plane, and a line has none.
    surface.flat = material.shading == EShading::Flat && !asLines;
    surface.twoSided = material.twoSided && !surface.flat;
    if (!surface.specular) {
        surface.maps &= ~(1u << static_cast<unsigned>(EMapKind::Specular));
        surface.maps &= ~(1u << static_cast<unsigned>(EMapKind::Shininess));
    } else if (material.shading == EShading::Metal) {
        surface.tintedSpecular = surface.maps != 0;
        if (!surface.tintedSpecular) look.specular = Times(look.specular, look.diffuse);
    }
    return look;
}

float LineWidth(const CPreparedMaterial& material) {
    const bool usable = std::isfinite(material.wireSizePx) && material.wireSizePx > 0;
    return usable ? std::min(material.wireSizePx, 64.0f) : 1.0f;
}
