// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "export/CPovMesh.h"

constexpr std::uint32_t kNoTexture = UINT32_MAX;

/** Triangles of a mesh that are written as one POV-Ray mesh, as they need the same lists. */
struct CPovPart {
    bool normals = false;
    bool texCoords = false;
    bool hidden = false;  ///< turned away from the eye and one-sided: the view does not show them
    std::uint32_t unlit = kNoTexture;  ///< of what turns away from the eye by its normals alone
    std::vector<CPovFace> faces;
};

/** What a batch's material means for its triangles. */
struct CPovBatch {
    std::uint32_t texture = 0;
    std::uint32_t unlit = kNoTexture;  ///< see CPovPart
    bool mapped = false;
    bool flat = false;
    bool oneSided = false;     ///< not seen from behind
    bool seesThrough = false;  ///< what is behind it may be seen
    bool skipped = false;      ///< not written at all
};

/**
 * Sorts the triangles of a mesh into parts; degenerate ones are left out. batches: one for each of the mesh.
 *
 * eyes: where the mesh is looked at from, in its own coordinates, once for each node that shows it. A
 * triangle is hidden when it turns its back to all of them. Those of a shell without holes are not, as nobody
 * sees its inside from outside; so the written mesh of a usual solid does not depend on the camera. No eyes:
 * nothing is hidden.
 */
[[nodiscard]] std::vector<CPovPart> SplitIntoParts(const CPreparedMesh& mesh, const CPovMesh& numbers,
                                                   std::span<const CPovBatch> batches,
                                                   std::span<const CVec3> eyes, bool smooth);
