// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "model/prepare/CPreparedScene.h"

/** The numbers of a prepared mesh as they are written: whole numbers of a decimal unit, each different
 * position, normal and texture coordinate once. */
struct CPovMesh {
    static constexpr int kNormalDecimals = 4;
    static constexpr int kUvDecimals = 5;

    std::vector<std::array<std::int64_t, 3>> positions;
    std::vector<std::array<std::int64_t, 3>> normals;
    std::vector<std::array<std::int64_t, 2>> texCoords;
    /** For each prepared vertex its place in the lists above. */
    std::vector<std::uint32_t> positionOf, normalOf, texCoordOf;
    int decimals = 0;    ///< positions are so many decimal places fine, as written
    float enlarged = 1;  ///< written coordinates are those of the mesh times this

    /** extent: the length that a millionth of is fine enough for positions, in the mesh's coordinates.
     * transform: what the vertices are multiplied with before; null for nothing. */
    [[nodiscard]] static CPovMesh Make(const CPreparedMesh& mesh, float extent, const CMat4* transform);
};

/** One triangle: three prepared vertices and the number of its texture. */
struct CPovFace {
    std::array<std::uint32_t, 3> corner{};
    std::uint32_t texture = 0;
};

/** True for a triangle without area in the written numbers, which POV-Ray would leave out
 * itself or refuse. */
[[nodiscard]] bool IsDegenerate(const CPovMesh& mesh, const CPovFace& face);
/** POV-Ray takes the plane's normal for a triangle whose corners have equal ones, even where those are
 * others. One corner of such a triangle gets a vertex of its own whose normal differs by the smallest step.
 * Vertices that are added have no counterpart in the prepared mesh. */
void KeepEqualNormals(CPovMesh& mesh, std::vector<CPovFace>& faces);
/** True when the normals of a triangle's corners point to its back, on the whole. */
[[nodiscard]] bool HasNormalsBehind(const CPovMesh& mesh, const CPovFace& face);
/** True when the normals of all corners are those of the triangles, so that none need be written. */
[[nodiscard]] bool AreFlat(const CPovMesh& mesh, const std::vector<CPovFace>& faces);
