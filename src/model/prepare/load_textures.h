// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "model/prepare/CPreparedScene.h"

class CScene;
struct CPrepareOptions;
class CTextureLocator;

/** Finds and decodes the pictures of all textures, on as many cores as the options say. Names that lead to the
 * same file become one texture, and the materials' maps are changed to it; the file is decoded once.
 *
 * All pictures together keep to the options' budget: as long as they do not, the largest ones are decoded at a
 * half, a quarter or an eighth of their sides, and at last not at all, the largest first. Those
 * whose decoding would take too long for their files' sizes are left out. Notes tell of these, and of what is not found or cannot be read. When the options stop it, the remaining images stay empty. */
void LoadTextures(const CScene& scene, const CPrepareOptions& options, CPreparedScene& prepared);
/** Finds and decodes the picture that texture.reference names, to at most maxBytes. On a failure returns a
 * note that says what is wrong. */
[[nodiscard]] std::optional<CSceneNote> LoadTexture(const CTextureLocator& textures, std::uint64_t maxBytes,
                                                    CPreparedTexture& texture);
/** Gives a texture a decoded picture. */
void SetPicture(CImage image, CPreparedTexture& texture);
