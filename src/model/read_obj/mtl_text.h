// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/** The lines of one material of an MTL file as tinyobjloader reads them rightly. As files have them it loses
 * the name behind "-s 2 2 name.png" or "-cc on name.png", takes "d -halo 0.5" for invisible and "Kd 0.5" for
 * dark red, and knows keywords only in the usual letter case. Texture names lose their folders and quotes;
 * lines that say nothing we draw, and any of over 4 KB, are left out. A lone "Tr 1", which programs write for
 * opaque materials, goes too. */
[[nodiscard]] std::string CanonicalMtl(std::string_view material);
