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
    std::uint32_t hiddenFrom = 0;      ///< bit i: one-sided, and eye i sees its back
    std::uint32_t unlit = kNoTexture;  ///< texture of triangles whose normals alone face away from the eye
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
    bool seesThrough = false;  ///< transparent at least in places
    bool skipped = false;      ///< not written at all
};

/** Sorts the triangles of a mesh into parts, without degenerate ones. batches: one entry for each batch of
 * the mesh.
 *
 * eyes: the eye's position in the mesh's coordinates, once for each node that shows the mesh. The view hides
 * one-sided triangles that face away from the eye. In a closed shell nothing is hidden, because its inside
 * cannot be seen from outside; so the written mesh of an ordinary solid does not depend on the camera. With
 * more than kMostEyes eyes a triangle is hidden only if all eyes see its back (all bits are set, or none).
 * Without eyes nothing is hidden. */
[[nodiscard]] std::vector<CPovPart> SplitIntoParts(const CPreparedMesh& mesh, const CPovMesh& numbers,
                                                   std::span<const CPovBatch> batches,
                                                   std::span<const CVec3> eyes, bool smooth);
