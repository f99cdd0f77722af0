// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "picture/CImage.h"

class CJobProgress;
struct CPreparedScene;

/** A node that can take another's place. */
struct CChoice {
    std::size_t node = 0;  ///< index into the scene's nodes
    std::string name;      ///< UTF-8
    std::size_t triangles = 0;
    friend bool operator==(const CChoice&, const CChoice&) = default;
};
/** The nodes of a scene that draw something, in its order. */
[[nodiscard]] std::vector<CChoice> ChoicesIn(const CPreparedScene& scene);
/** The one that is proposed for a node: of the same name, whatever the case of its letters, or the first; -1 for an
 * empty list. */
[[nodiscard]] int ChoiceFor(const std::vector<CChoice>& choices, const std::string& node);

/** A small picture of one node alone, seen from above and the side, on a transparent ground: a rough one, without
 * OpenGL, for any thread. Pictures on the surface give it their mean colour. The work is bounded whatever the mesh is;
 * what goes beyond it is left out. Empty when cancelled. */
[[nodiscard]] CImage DrawNodePicture(const CPreparedScene& scene, std::size_t node, int sidePx,
                                     const CJobProgress& progress);
