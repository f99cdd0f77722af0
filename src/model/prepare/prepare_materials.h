// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include "model/prepare/CPreparedScene.h"

class CScene;
struct CPrepareOptions;
class CTextureLocator;
struct Lib3dsMaterial;

/** Gives the index of the picture that a map names; the name is not empty. */
using CTextureIndexOf = std::function<int(const char* name)>;

/** One material as the file has it. */
[[nodiscard]] CPreparedMaterial PrepareMaterial(const Lib3dsMaterial& material,
                                                const CTextureIndexOf& indexOf);
/** Copies all values of the material into result again; result's name, pictures and twoSided stay. */
void SetMaterialValues(const Lib3dsMaterial& material, CPreparedMaterial& result);
/** True where some map of the material needs texture coordinates. */
[[nodiscard]] bool UsesTexCoords(const CPreparedMaterial& material);

/** Fills materials (the file's in order, then the default one) and textures (each picture that a material
 * names once; not loaded yet, see LoadTextures). */
void PrepareMaterials(const CScene& scene, CPreparedScene& prepared);

/** Finds and decodes all textures, on as many cores as the options say; a note tells of each that is not
 * found or cannot be read. When the options stop it, the remaining images stay empty. */
void LoadTextures(const CScene& scene, const CPrepareOptions& options, CPreparedScene& prepared);
/** Finds and decodes the picture that texture.reference names. On a failure returns a note that says what
 * is wrong. */
[[nodiscard]] std::optional<CSceneNote> LoadTexture(const CTextureLocator& textures,
                                                    CPreparedTexture& texture);
/** Gives a texture a decoded picture. */
void SetPicture(CImage image, CPreparedTexture& texture);

/** Many files leave a material black where a picture covers it. When that picture is missing, makes the
 * material grey, so that its shape can be seen, and returns true. A material that is black without naming a
 * picture stays black. */
bool ReplaceBlackWithoutPicture(const std::vector<CPreparedTexture>& textures, CPreparedMaterial& material);
/** Sets needsBlending from the material's values and the loaded textures. */
void DecideBlending(const std::vector<CPreparedTexture>& textures, CPreparedMaterial& material);
/** DecideBlending for all materials and, once pictures are loaded, ReplaceBlackWithoutPicture, with a note
 * for each material that becomes grey. */
void DecideLooks(bool picturesAreLoaded, CPreparedScene& prepared);
