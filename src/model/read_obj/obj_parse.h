// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "base/CResult.h"
#include "model/read_obj/CObjGeometry.h"

/** Reads the text of an OBJ file (UTF-8 or bytes, any line ends). Points and lines come as faces, see
 * MakePointsAndLinesSolid; where the file has nothing but vertices, each of them is a point. Fails only where
 * the text holds more than we take (TooLarge). */
[[nodiscard]] CResult<CObjGeometry> ParseObj(std::string_view text);
