// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

struct Lib3dsMaterial;

/** Makes a lib3ds material of that name, which the caller owns, from the text that follows "newmtl" in an MTL
 * file; without a text, a plain grey one. All are two-sided, as OBJ files cannot say otherwise and often turn
 * faces inside out. Keywords are read in any letter case; lines about what we do not draw are ignored.
 *
 * Specular exponents Ns become 3DS shininess log2(Ns) / 10. An ambient colour that is missing or white (what
 * many programs write without a thought) is the diffuse one. "Kd 0.5" is grey. A lone "Tr 1", which programs
 * write for opaque materials, says nothing. map_d of the same file as map_Kd means its alpha. Options of a
 * map stand before or behind its name; the name keeps its folders where they lie below the model's. */
[[nodiscard]] Lib3dsMaterial* MakeMtlMaterial(const std::string& name, std::optional<std::string_view> text);
