// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "model/prepare/CPreparedScene.h"

class CScene;
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
 * names once, within the scene's budget; not loaded yet, see LoadTextures). */
void PrepareMaterials(const CScene& scene, CPreparedScene& prepared);

/** Calls visit for each map of a material. */
void ForEachMap(CPreparedMaterial& material, const std::function<void(CPreparedMap&)>& visit);

/** Many files leave a material black where a picture covers it. When that picture is missing, makes the
 * material grey, so that its shape can be seen, and returns true. A material that is black without naming a
 * picture stays black. */
bool ReplaceBlackWithoutPicture(const std::vector<CPreparedTexture>& textures, CPreparedMaterial& material);
/** Sets needsBlending from the material's values and the loaded textures. */
void DecideBlending(const std::vector<CPreparedTexture>& textures, CPreparedMaterial& material);
/** DecideBlending for all materials and, once pictures are loaded, ReplaceBlackWithoutPicture, with a note
 * for each material that becomes grey. */
void DecideLooks(bool picturesAreLoaded, CPreparedScene& prepared);
