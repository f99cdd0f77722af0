// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/math/CVec.h"

/** Simplifies triangles of one set of vertices, in pieces of at most kMostInPiece whose cuts stay as they are: the
 * memory that simplifying takes grows with a piece, not with the mesh. */
class CThinner {
  public:
    static constexpr std::size_t kMostInPiece = 65'536;  ///< triangles

    /** Both must outlive the thinner. Places must be finite. */
    CThinner(const std::vector<CVec3>& places, const std::atomic<bool>& stop);

    /** Triangles by three of the places each, about `wanted` of them, as far as borders and seams allow. *error is set to
     * the distance by which the surface has moved. Incomplete once stop is true. */
    [[nodiscard]] std::vector<std::uint32_t> Thin(std::vector<std::uint32_t> triangles, std::size_t wanted,
                                                  float& error);

  private:
    using CTriangles = std::span<std::array<std::uint32_t, 3>>;
    struct CGoal {
        double share;      ///< of the triangles to keep
        unsigned options;  ///< of meshoptimizer
    };
    void ThinPieces(CTriangles triangles, const CGoal& goal, std::vector<std::uint32_t>& result,
                    float& error);
    void ThinPiece(CTriangles triangles, const CGoal& goal, std::vector<std::uint32_t>& result, float& error);
    [[nodiscard]] std::size_t Cut(CTriangles triangles) const;

    const std::vector<CVec3>& m_places;
    const std::atomic<bool>& m_stop;
    std::vector<std::uint32_t> m_numberInPiece;  ///< of each place; kNone where the piece does not use it
};
