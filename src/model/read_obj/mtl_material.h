// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

struct Lib3dsMaterial;

/** A material of lib3ds with that name for the caller to own, made of what an MTL file says behind "newmtl"; a
 * plain grey one where no file says anything. All are two-sided, as OBJ files know no other and often turn faces inside
 * out. Keywords are known in any letter case, and lines that say nothing we draw are passed over.
 *
 * Specular exponents Ns become 3DS shininess log2(Ns) / 10. An ambient colour that is missing or white (what
 * many programs write without a thought) is the diffuse one. "Kd 0.5" is grey. A lone "Tr 1", which programs
 * write for opaque materials, says nothing. map_d of the same file as map_Kd means its alpha. Options of a map
 * stand before or behind its name; the name keeps its folders where they lie below the model's. */
[[nodiscard]] Lib3dsMaterial* MakeMtlMaterial(const std::string& name, std::optional<std::string_view> text);
