// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "export/pov/CPovPictures.h"

struct CPreparedMap;

/** The pieces of POV-Ray text that place a map's picture on a surface. */
namespace pov_maps {

/** A number with at most five decimals, finer than an 8-bit colour needs. */
[[nodiscard]] std::string Number(float value);

/** The text that takes the picture's coordinates to the file's texture coordinates: " matrix<...>", preceded
 * by the mirroring of every second tile; empty when both are equal. */
[[nodiscard]] std::string Placement(const CPreparedMap& map);

/** An image_map of the picture's colours, with modifiers after the file name. */
[[nodiscard]] std::string ImageMap(const CPovPictures::CPicture& picture, const std::string& modifiers);
/** A pattern whose value is the picture's grey. */
[[nodiscard]] std::string Pattern(const CPovPictures::CPicture& picture);

/** For a map that is not tiled: a pattern that is 1 within its picture and 0 beside it. */
[[nodiscard]] std::string Within(const CPreparedMap& map);
/** The choice between two bodies by a pattern: `zero` where it is 0, `one` where it is 1; with soft edges, if any.
 * listKeyword is "pigment_map" or "texture_map". */
[[nodiscard]] std::string Choice(const std::string& pattern, const std::string& listKeyword,
                                 const std::string& zero, const std::string& one);
/** The same for the pattern Within. */
[[nodiscard]] std::string Once(const std::string& pattern, const std::string& listKeyword,
                               const std::string& outside, const std::string& inside);

}  // namespace pov_maps
