// SPDX-License-Identifier: MIT
#pragma once

#include "model/prepare/CPreparedScene.h"

class CScene;
struct CPrepareOptions;
struct Lib3dsMaterial;

/** Fills materials (the file's in order, then the default one) and textures (each picture that a material
 * names once; not loaded yet, see LoadTextures). */
void PrepareMaterials(const CScene& scene, CPreparedScene& prepared);

/** Finds and decodes all textures, on as many cores as the options say; what was not found or not readable is
 * noted. Stopped by the options it leaves the rest out. */
void LoadTextures(const CScene& scene, const CPrepareOptions& options, CPreparedScene& prepared);

/** A material is often left black where a picture covers it. When the picture is not to be had it
 * becomes grey, which shows the shape; a note says so. Materials that are black without naming a
 * picture stay black. */
void ReplaceBlackWithoutPicture(CPreparedScene& prepared);

/** Sets needsBlending of all materials from their values and the loaded textures. */
void DecideBlending(CPreparedScene& prepared);
