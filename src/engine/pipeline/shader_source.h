// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "model/prepare/material_kinds.h"

/** The maps of a material in the order of their texture units. */
enum class EMapKind { Texture, Texture2, Opacity, Specular, Shininess, SelfIllumination, Bump, Reflection };
constexpr int kMapKinds = 8;

/** Which pixels of a surface are drawn. Most pixels of a surface with a transparent picture are often opaque,
 * and no order of its triangles is right everywhere. So its solid pixels are drawn with the depth buffer, and
 * only the rest from back to front. */
enum class ESurfacePart { Whole, Solid, Translucent };

/** How much of dimmed parts is left. */
constexpr float kDimmedOpacity = 0.16f;

/** How a part is drawn, apart from its material. */
struct CSurfaceUse {
    bool hasTexCoords = false;
    ESurfacePart part = ESurfacePart::Whole;
    bool litByVertex = false;  ///< a wish: materials that need a pixel's normal are lit by pixel all the same
    bool dimmed = false;       ///< kDimmedOpacity times as opaque

    friend bool operator==(const CSurfaceUse&, const CSurfaceUse&) = default;
};

/** Selects the shader program for a part. Each combination that a scene uses gets its own program,
 * because software OpenGL is only as fast as a program is short: a plain part under the headlight needs a
 * dozen instructions. */
struct CShaderVariant {
    std::uint32_t maps = 0;  ///< bit 1 << EMapKind
    int lights = 0;          ///< 0: headlight
    bool spots = false;
    bool ranges = false;
    bool specular = false;
    bool tintedSpecular = false;  ///< metal: the highlight takes the surface's colour
    bool flat = false;
    bool twoSided = false;
    bool litByVertex = false;  ///< not with flat, bump maps or reflections, which need a pixel's normal
    bool dimmed = false;
    ESurfacePart part = ESurfacePart::Whole;

    [[nodiscard]] bool Has(EMapKind map) const { return (maps >> static_cast<unsigned>(map) & 1u) != 0; }
    /** Different for different variants. */
    [[nodiscard]] std::uint32_t Key() const;
};

/** GLSL 1.20. Matrices are OpenGL's current ones; everything else is in uniforms:
 *
 * uNormal (mat3); uToViewer (CFrameView::PixelToViewer); uViewer (CFrameView::viewer, for lighting by
 * vertex); uBase, uDiffuse (with opacity in w), uAmbient, uSelf, uSpecular (exponent in w); uAmbientLight;
 * uLightPosition (cosOuter in w), uLightDirection (cosInner in w), uLightColor, uLightRange; for map
 * number i: uMap<i>, uMapS[i] and uMapT[i] (rows of the coordinates' transform), uMapValue[i] (amount, sign,
 * bias, 1 when not tiled), uMapWeight[i] (the value is the weighted sum of the channels; of a texture w is 1 where its alpha makes transparent, z where it lets the colour
 * below show; of a specular map x is the strength).
 *
 * How maps act: texture and texture2 replace the colour by their amount; the first one's alpha makes
 * transparent or, of a decal, lets the colour show; the second one's alpha lets the first show. Opacity and
 * self-illumination maps replace the material's value by their amount, specular maps its highlight colour;
 * shininess maps scale the highlight; reflections are added. */
[[nodiscard]] std::string VertexShaderSource(const CShaderVariant& variant);
[[nodiscard]] std::string FragmentShaderSource(const CShaderVariant& variant);
