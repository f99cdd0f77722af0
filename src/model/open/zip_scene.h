// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "model/scene/CScene.h"

/** Reads the 3DS model that a zip archive holds, with the archive's pictures as its textures. Of several
 * models the one named like the archive is taken, else the one in the fewest folders, else the first; a note
 * names it. archiveName is used for that comparison alone. TooLarge if the model and its pictures take more than
 * maxBytes unpacked. */
[[nodiscard]] CResult<CScene> ReadZipScene(
    std::vector<std::byte> bytes, std::string_view archiveName,
    std::uint64_t maxBytes = std::numeric_limits<std::uint64_t>::max());
