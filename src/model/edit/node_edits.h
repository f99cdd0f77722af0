// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "base/math/CMatrix.h"
#include "lib3ds/types.h"

/** Moving and turning the nodes of a Lib3dsFile. An animated node keeps its animation: every key
 * moves along. */
namespace node_edits {

/** Adds offset, in the coordinates of the node's parent, to all position keys of an object node (to a new one
 * at frame 0 when there is none). */
void MoveTracks(Lib3dsNode& node, CVec3 offset);
/** Turns an object node about its own origin: rotation is applied after its own rotation, in the coordinates
 * of its parent, and must be a rotation. */
void RotateTracks(Lib3dsNode& node, const CMat4& rotation);
/** Converts a rotation from scene coordinates into those of parentWorld, whose scale and shear
 * are ignored. */
[[nodiscard]] CMat4 RotationInParent(const CMat4& parentWorld, const CMat4& rotation);

/** A copy of what MoveTracks and RotateTracks change, to undo them with. */
class CTracksBefore {
  public:
    explicit CTracksBefore(const Lib3dsNode& node);
    /** Restores the copied values; keys that were added since are removed. */
    void PutBack(Lib3dsNode& node) const;

  private:
    std::array<float, 3> m_position{};
    std::vector<std::byte> m_positionKeys, m_rotationKeys;
};

}  // namespace node_edits
