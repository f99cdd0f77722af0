// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/math/CVec.h"

struct CMeshView;

/** One face while its mesh is prepared. */
struct CMeshFace {
    std::uint16_t point[3];
    std::uint16_t wrap;  ///< bits 0..2: u of that corner is moved up; bits 3..5: v
    std::uint32_t smoothing;
    /** Unit normal times the angle at each corner, times how far the normal can be trusted (0..1). */
    CVec3 weighted[3];
};

struct CMeshFaces {
    std::vector<CMeshFace> faces;       ///< without those with two equal corners
    std::vector<std::uint32_t> source;  ///< for each its number in the view
    double area = 0;                    ///< of all faces
};

/** How far a normal can be trusted depends on how precise the points are: rounding them turns the normal of a
 * face by about their error over its height. So it is trusted by h^4 / (1 + h^4), with the height in errors of
 * a point: all usual faces weigh the same, and one without area next to nothing. */
[[nodiscard]] CMeshFaces CollectFaces(const CMeshView& view, bool hasTexCoords);

/** For each point the first one at the same place, where the mesh has texture coordinates: exporters repeat a
 * point where the map has a seam. Without a map points are repeated on purpose, and each is its own. */
[[nodiscard]] std::vector<std::uint16_t> WeldPoints(const CMeshView& view);

/** Finds out which faces round a point are turned over against their neighbours: two faces that meet in an
 * edge and go through it in the same direction. Edges of one face or of more than two say nothing. */
class CFanSides {
  public:
    /** One corner of the fan: the points after and before it in its face. */
    struct CCorner {
        std::uint16_t next, previous;
    };
    enum class ERelation { Same, TurnedOver, Unknown };

    /** Returns whether any two neighbours are turned over against each other. */
    bool Find(std::span<const CCorner> fan);
    /** How two corners of the fan that was given to Find lie to each other. */
    [[nodiscard]] ERelation Relation(std::size_t one, std::size_t other) const;

  private:
    struct CEdge {
        std::uint32_t point, corner;
        bool leads;  ///< away from the middle of the fan
    };
    struct CSide {
        std::uint32_t parent;
        std::uint32_t size;
        bool turned;  ///< against the parent
    };
    [[nodiscard]] static bool MayBeTurned(std::span<const CCorner> fan);
    void SortEdges(std::span<const CCorner> fan);
    [[nodiscard]] std::pair<std::uint32_t, bool> Root(std::size_t corner) const;
    void Join(const CEdge& one, const CEdge& other);

    std::vector<CEdge> m_edges;
    std::vector<CSide> m_sides;
};
