// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "base/math/CVec.h"
#include "engine/pipeline/shader_source.h"
#include "model/prepare/material_kinds.h"

class CTextureSet;
struct CPreparedMap;
struct CPreparedMaterial;

/** What a material means for drawing, the same for shaders and the fixed pipeline:
 *
 *   colour = self-illumination * diffuse + file's ambient light * ambient
 *          + for each light: colour * (diffuse * N.L + specular * (N.H)^exponent where N.L > 0)
 *   opacity = 1 - transparency; blending scales everything by it, highlights too
 *
 * so a self-illuminated part adds the lamps' light to its own; sums are clipped at white. */
struct CMaterialLook {
    CVec3 diffuse, ambient;
    CVec3 specular;      ///< times its strength; for metal without maps tinted by diffuse
    float exponent = 1;  ///< 2^(10 * shininess)
    float selfIllumination = 0;
    float opacity = 1;
    CShaderVariant surface;  ///< without the lights, which the pipeline adds

    /** Maps count only if the mesh has texture coordinates (reflections always) and the texture
     * was uploaded. */
    [[nodiscard]] static CMaterialLook From(const CPreparedMaterial& material, const CTextureSet& textures,
                                            bool hasTexCoords, bool asLines);
};

/** The material's maps in the order of EMapKind. */
[[nodiscard]] std::array<const CPreparedMap*, kMapKinds> MapsOf(const CPreparedMaterial& material);
/** In which its lines are drawn, in pixels: 1 to 64 for sensible files. */
[[nodiscard]] float LineWidth(const CPreparedMaterial& material);
