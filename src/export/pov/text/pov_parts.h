// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "export/pov/text/CPovMesh.h"

constexpr std::uint32_t kNoTexture = UINT32_MAX;

/** Triangles of a mesh that are written as one POV-Ray mesh, as they need the same lists. */
struct CPovPart {
    bool normals = false;
    bool texCoords = false;
    std::uint32_t hiddenFrom = 0;      ///< bit i: one-sided, and its back turned to eye number i
    std::uint32_t unlit = kNoTexture;  ///< of what turns away from the eye by its normals alone
    std::vector<CPovFace> faces;
};

constexpr std::size_t kMostEyes = 8;

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

/** Sorts the triangles of a mesh into parts; degenerate ones are left out. batches: one for each of the mesh.
 *
 * eyes: where the mesh is looked at from, in its own coordinates, once for each node that shows it. The view
 * does not show what turns its back. Of a shell without holes nothing is hidden, as nobody sees its inside
 * from outside; so the written mesh of a usual solid does not depend on the camera. With more than kMostEyes
 * nothing is hidden that any of them sees (all bits are set, or none). No eyes: nothing is hidden. */
[[nodiscard]] std::vector<CPovPart> SplitIntoParts(const CPreparedMesh& mesh, const CPovMesh& numbers,
                                                   std::span<const CPovBatch> batches,
                                                   std::span<const CVec3> eyes, bool smooth);
