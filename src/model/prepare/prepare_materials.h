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
/** Takes all values of the material again; its name, its pictures and twoSided stay. */
void SetMaterialValues(const Lib3dsMaterial& material, CPreparedMaterial& result);
/** True where some map of the material needs texture coordinates. */
[[nodiscard]] bool UsesTexCoords(const CPreparedMaterial& material);

/** Fills materials (the file's in order, then the default one) and textures (each picture that a material
 * names once; not loaded yet, see LoadTextures). */
void PrepareMaterials(const CScene& scene, CPreparedScene& prepared);

/** Finds and decodes all textures, on as many cores as the options say; what was not found or not readable is
 * noted. Stopped by the options it leaves the rest out. */
void LoadTextures(const CScene& scene, const CPrepareOptions& options, CPreparedScene& prepared);
/** Finds and decodes the picture that texture.reference names; otherwise a note says what is wrong. */
[[nodiscard]] std::optional<CSceneNote> LoadTexture(const CTextureLocator& textures,
                                                    CPreparedTexture& texture);
/** Gives a texture a decoded picture. */
void SetPicture(CImage image, CPreparedTexture& texture);

/** A material is often left black where a picture covers it. When the picture is not to be had it
 * becomes grey, which shows the shape: true. Materials that are black without naming a picture stay black. */
bool ReplaceBlackWithoutPicture(const std::vector<CPreparedTexture>& textures, CPreparedMaterial& material);
/** Sets needsBlending from the material's values and the loaded textures. */
void DecideBlending(const std::vector<CPreparedTexture>& textures, CPreparedMaterial& material);
/** Both for all materials, with a note for each that becomes grey; the first only once pictures are loaded. */
void DecideLooks(bool picturesAreLoaded, CPreparedScene& prepared);
