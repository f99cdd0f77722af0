// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "base/math/CVec.h"
#include "lib3ds/types.h"

/** Setting the properties of one Lib3dsMaterial. Values are clamped to 0..1 and must be finite. */
namespace material_edits {

/** How bright the ambient colour is in proportion to the diffuse one, 0..1; 1 for a black one, which tells nothing. */
[[nodiscard]] float AmbientShare(const Lib3dsMaterial& material);
/** Sets the diffuse colour, and the ambient colour in this proportion to it. A picture on the surface would hide
 * the colour: its amount becomes 0, and its name stays. */
void SetColor(Lib3dsMaterial& material, CVec3 color, float ambientShare);
/** 0 is dull, 1 a small bright highlight: sets both the highlight's size and its strength. */
void SetShininess(Lib3dsMaterial& material, float value);
/** 0 is opaque, 1 invisible. */
void SetTransparency(Lib3dsMaterial& material, float value);
/** Puts a picture on the surface at full amount; an empty name takes it off. A picture that replaces another
 * keeps its placement; the first one is repeated. */
void SetTexture(Lib3dsMaterial& material, std::string_view textureName);

/** A picture's file name as a material can hold it: shortened before its ending if need be and, for a number
 * from 2 on, with "#2", "#3", ... */
[[nodiscard]] std::string TextureName(const std::string& fileName, unsigned number);

}  // namespace material_edits
