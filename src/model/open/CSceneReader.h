// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "model/scene/CScene.h"
#include "model/textures/CTextureLocator.h"

/** Opens scenes. Whatever the bytes are, the outcome is a scene (perhaps repaired, see its notes) or a
 * CError. Paths are UTF-8. */
class CSceneReader {
  public:
    /** Opens by content and extension: a 3DS file, a zip archive that holds one, or an OBJ file. A file of
     * more than maxBytes is TooLarge, and so is an archive whose model and pictures take more unpacked. cancelled
     * may be null; another thread may set it, and reading then ends with Cancelled: soon, except while an OBJ
     * file is converted. */
    [[nodiscard]] static CResult<CScene> ReadFile(
        std::string_view path, std::uint64_t maxBytes = std::numeric_limits<std::uint64_t>::max(),
        const std::atomic<bool>* cancelled = nullptr);
    /** Reads the bytes of a 3DS file; textures are looked for in the locator alone. */
    [[nodiscard]] static CResult<CScene> ReadBytes(std::vector<std::byte> bytes,
                                                   CTextureLocator textures = {});
};
