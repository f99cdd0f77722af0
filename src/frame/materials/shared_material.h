// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct CPreparedScene;

/** Which parts of a scene have a material in common, as it is drawn now: what an edit gave a material of its own shares
 * it with nobody any more. */
struct CMaterialShare {
    std::vector<std::string> nodes;  ///< those that draw a material of the asked one, itself included
    std::vector<std::string>
        materials;  ///< the names of the materials of the asked one; empty for faces without one
};
/** Empty when no node with a mesh has the name. */
[[nodiscard]] CMaterialShare ShareOf(const CPreparedScene& scene, std::string_view node);
