// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "base/CHashIndex.h"
#include "model/read_obj/CObjGeometry.h"
#include "model/read_obj/obj_triangulate.h"

/** As much of an OBJ group as one 3DS mesh can hold, with what is needed to derive its smoothing groups. */
struct CObjPiece {
    static constexpr std::size_t kMaxPoints = 65'535,
                                 kMaxFaces = 65'535;  ///< the format's counts have 16 bits

    struct CFace {
        std::uint16_t points[3];
        std::uint16_t flags;      ///< which edges are edges of the polygon, as lib3ds has them
        std::int32_t material;    ///< index into CObjGeometry::materials, or -1
        std::uint32_t smoothing;  ///< the file's number; AssignSmoothing makes a mask of it
    };

    std::vector<CVec3> points;          ///< all different together with their texel; +Z up
    std::vector<std::uint16_t> places;  ///< for each point the first point at the same place
    std::vector<CVec2> texels;          ///< empty, or one for each point
    std::vector<CFace> faces;
    std::vector<std::int32_t>
        cornerNormals;  ///< three for each face: index into CObjGeometry::normals, or -1
};

/** Makes pieces of the groups of an OBJ file: cuts polygons into triangles, turns +Y up into +Z up, and gives
 * corners that agree in place and texture coordinates one point, however the file numbers them. */
class CObjMeshBuilder {
  public:
    /** Gets each piece as soon as it is full or its group ends. */
    using CSink = std::function<void(std::uint32_t group, CObjPiece piece)>;

    CObjMeshBuilder(const CObjGeometry& geometry, bool keepNormals, CSink sink);

    /** Runs through all faces, group by group. */
    void Build();

  private:
    void AddSegment(std::size_t segment);
    void AddFace(std::size_t face, const CObjSegment& segment);
    void AddTriangle(std::uint32_t firstCorner, std::uint32_t corners, const CTriangle& triangle,
                     const CObjSegment& segment);
    [[nodiscard]] std::uint16_t PointOf(std::uint32_t corner);
    [[nodiscard]] std::uint16_t AddPoint(CVec3 position, CVec2 texel);
    void Finish(std::uint32_t group);

    const CObjGeometry& m_geometry;
    const bool m_keepNormals;
    CSink m_sink;
    std::size_t m_earBudget;
    std::vector<CVec3> m_polygon;  ///< kept from face to face, as m_triangles is
    std::vector<CTriangle> m_triangles;

    CObjPiece m_piece;
    bool m_anyTexel = false;
    struct CCorner {
        std::int32_t position, texCoord;
    };
    std::vector<CCorner> m_corners;             ///< the different ones of the piece ...
    std::vector<std::uint16_t> m_cornerPoints;  ///< ... and their points
    CHashIndex m_byCorner, m_byPoint, m_byPlace;
};
