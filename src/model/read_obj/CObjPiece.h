// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/math/CVec.h"

/** As much of an OBJ group as one 3DS mesh can hold, with what is needed to tell its smoothing groups. */
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
