// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/math/CVec.h"

/** A triangle of a CShape; smoothing is the bit mask of its groups, material an index
 * into CShape::materials. */
struct CShapeTriangle {
    std::uint32_t corner[3] = {0, 0, 0};
    std::uint32_t smoothing = 1;
    std::uint16_t material = 0;
};

/** Triangles under construction, in the coordinates of the object they become. texCoords is empty or has
 * one entry for each point; a shape with texture coordinates has doubled points along its seams, as the
 * format wants it. */
struct CShape {
    std::vector<CVec3> points;
    std::vector<CVec2> texCoords;
    std::vector<CShapeTriangle> triangles;
    std::vector<std::string> materials;  ///< names; an empty list leaves the triangles without a material

    std::uint32_t AddPoint(CVec3 point);
    std::uint32_t AddPoint(CVec3 point, CVec2 texCoord);
    void AddTriangle(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t smoothing = 1);
    /** Corners counter-clockwise as seen from outside. */
    void AddQuad(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d,
                 std::uint32_t smoothing = 1);

    CShape& Material(const std::string& name);
    CShape& Move(CVec3 by);
    /** A negative product of the factors turns the triangles over, so that the outside stays outside. */
    CShape& Scale(CVec3 by);
    CShape& Turn(float angleDeg, CVec3 axis);
    /** Texture coordinates from x and y: (0, 0) at the lower corner, (1, 1) at the upper. */
    CShape& MapFlat(CVec2 lower, CVec2 upper);
    CShape& Add(const CShape& other);
};
