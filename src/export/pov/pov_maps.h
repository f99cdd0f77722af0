// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "export/pov/CPovPictures.h"

struct CPreparedMap;

/** The pieces of POV-Ray text that place a map's picture on a surface. */
namespace pov_maps {

/** At most five decimals, which is finer than an 8-bit colour. */
[[nodiscard]] std::string Number(float value);

/** Turns the picture's coordinates into those of the file: " matrix<...>" with the mirroring of every other
 * tile before it; empty where they are alike. */
[[nodiscard]] std::string Placement(const CPreparedMap& map);

/** The picture's colours. modifiers are put in after its name. */
[[nodiscard]] std::string ImageMap(const CPovPictures::CPicture& picture, const std::string& modifiers);
/** The picture's grey as the value of a pattern. */
[[nodiscard]] std::string Pattern(const CPovPictures::CPicture& picture);

/** For a map that is not tiled: `inside` where its picture lies, `outside` beside it. listKeyword is
 * "pigment_map" or "texture_map", and both bodies are such. */
[[nodiscard]] std::string Once(const CPreparedMap& map, const std::string& listKeyword,
                               const std::string& outside, const std::string& inside);

}  // namespace pov_maps
