// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "model/prepare/CPreparedScene.h"

/** The numbers of a prepared mesh as they are written: integers in a decimal unit. Equal positions, normals
 * and texture coordinates are stored once. */
struct CPovMesh {
    static constexpr int kNormalDecimals = 4;
    static constexpr int kUvDecimals = 5;

    std::vector<std::array<std::int64_t, 3>> positions;
    std::vector<std::array<std::int64_t, 3>> normals;
    std::vector<std::array<std::int64_t, 2>> texCoords;
    /** For each prepared vertex its place in the lists above. */
    std::vector<std::uint32_t> positionOf, normalOf, texCoordOf;
    int decimals = 0;    ///< decimal places of the written positions
    float enlarged = 1;  ///< the factor from the mesh's coordinates to the written ones

    /** extent: positions are rounded to about a millionth of this length, in the mesh's coordinates.
     * transform: applied to the vertices first; null for none. */
    [[nodiscard]] static CPovMesh Make(const CPreparedMesh& mesh, float extent, const CMat4* transform);
};

/** One triangle: three prepared vertices and the number of its texture. */
struct CPovFace {
    std::array<std::uint32_t, 3> corner{};
    std::uint32_t texture = 0;
};

/** True for a triangle whose written numbers give it no area; POV-Ray would skip or reject it. */
[[nodiscard]] bool IsDegenerate(const CPovMesh& mesh, const CPovFace& face);
/** For a triangle whose three corners have equal normals POV-Ray uses the normal of its plane instead. To
 * prevent this, one corner gets a new vertex whose normal differs by the smallest step. New vertices have no
 * counterpart in the prepared mesh. */
void KeepEqualNormals(CPovMesh& mesh, std::vector<CPovFace>& faces);
/** True when the sum of the corners' normals points to the triangle's back. */
[[nodiscard]] bool HasNormalsBehind(const CPovMesh& mesh, const CPovFace& face);
/** True when all corners have the normal of their triangle's plane, so that normals need not be written. */
[[nodiscard]] bool AreFlat(const CPovMesh& mesh, const std::vector<CPovFace>& faces);
