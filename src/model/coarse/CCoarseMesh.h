// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/math/CMatrix.h"
#include "model/prepare/CPreparedScene.h"

struct CMeshView;

/** Makes a coarse mesh of one that was read: its box is cut into cells, all points of a cell become one, their
 * mean, and of the faces those remain whose corners lie in three cells (Rossignac and Borrel, "Multi-resolution
 * 3D approximations", 1993). So there are no gaps, at the borders of materials neither. The outermost points are
 * vertices, too, which no face uses: so the bounds are those of the mesh. */
class CCoarseMesh {
  public:
    /** bounds: of the points that faces use, as Fill places them. share: how many faces are to remain, roughly,
     * as a share of all. defaultMaterial: of faces without one. */
    CCoarseMesh(const CMeshView& view, const CBox& bounds, float share, std::uint32_t defaultMaterial);

    /** Sets vertices, indices and batches. Faces of materials whose entry in leftOut is true stay out. */
    void Fill(CPreparedMesh& mesh, const std::vector<bool>& leftOut);

  private:
    /** At most so many cells along each side: their numbers fit 16 bits, and the grid a processor's cache. */
    static constexpr std::uint32_t kMostCells = 32;
    static constexpr std::uint16_t kNone = 0xFFFF;

    struct CFace {
        std::array<std::uint16_t, 3> corners;  ///< numbers of cells that are in use
        std::uint16_t material;
    };
    struct CCell {
        CVec3 sum, normal;
        float points = 0;
    };

    [[nodiscard]] std::uint16_t CellOf(std::uint16_t point);
    void KeepIfExtreme(CVec3 point);
    void CollectFaces(const std::vector<bool>& leftOut);
    void SumNormals();
    void EmitVertices(CPreparedMesh& mesh) const;
    void EmitFaces(CPreparedMesh& mesh);

    const CMeshView& m_view;
    std::uint32_t m_defaultMaterial;
    CMat4 m_flip;
    bool m_flips;
    CVec3 m_origin;
    float m_cellsAUnit = 0;
    std::array<std::uint32_t, 3> m_size{1, 1, 1};
    std::vector<std::uint16_t> m_grid;         ///< for each place the number of its cell, or kNone
    std::vector<std::uint16_t> m_cellOfPoint;  ///< or kNone
    std::vector<CCell> m_cells;
    std::vector<CFace> m_faces;
    double m_twiceArea = 0;
    std::array<CVec3, 14> m_extremes{};  ///< the outermost points along the axes and diagonals, both ways
    std::array<float, 14> m_reach;
};
