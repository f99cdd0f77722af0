// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "model/scene/CScene.h"
#include "model/textures/CTextureLocator.h"

/** Opens scenes. Whatever the bytes are, the outcome is a scene (perhaps repaired, see its notes) or a
 * CError. Paths are UTF-8. */
class CSceneReader {
  public:
    /** Opens by content and extension: a 3DS file, a zip archive that holds one, or an OBJ file. */
    [[nodiscard]] static CResult<CScene> ReadFile(std::string_view path);
    /** Reads a 3DS image that somebody holds in memory; textures are found in the locator alone. */
    [[nodiscard]] static CResult<CScene> ReadBytes(std::vector<std::byte> bytes,
                                                   CTextureLocator textures = {});
};
