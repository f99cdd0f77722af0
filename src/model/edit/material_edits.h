// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "base/CResult.h"
#include "base/math/CVec.h"
#include "lib3ds/types.h"

class CScene;

/** Setting the properties of one Lib3dsMaterial. Values are clamped to 0..1 and must be finite. */
namespace material_edits {

/** Sets the diffuse colour, and the ambient one so that it stays as dark beside it as it was. A picture on
 * the surface would hide the colour: its amount becomes 0, and its name stays. */
void SetColor(Lib3dsMaterial& material, CVec3 color);
/** 0 is dull, 1 a small bright highlight: sets both the highlight's size and its strength. */
void SetShininess(Lib3dsMaterial& material, float value);
/** 0 is opaque, 1 invisible. */
void SetTransparency(Lib3dsMaterial& material, float value);
/** Puts a picture on the surface at full amount; an empty name takes it off. A surface that had one keeps its
 * placing, another gets a repeated one. */
void SetTexture(Lib3dsMaterial& material, std::string_view textureName);

/** Makes the scene find the picture at a path (UTF-8) and gives the name for its materials: the file's own
 * name, or one with "#2", ... when the scene calls another picture so. Fails when the file cannot be read. */
[[nodiscard]] CResult<std::string> AddTextureFile(CScene& scene, std::string_view path);
/** Makes the pictures of a material that came from another scene findable in this one, and renames
 * them where needed. */
void AdoptTextures(CScene& scene, const CScene& from, Lib3dsMaterial& material);

}  // namespace material_edits
