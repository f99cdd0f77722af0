// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/math/CVec.h"

/** A run of faces that share group, material and smoothing group; it ends where the next one begins. */
struct CObjSegment {
    std::uint32_t firstFace = 0;
    std::uint32_t group = 0;      ///< index into CObjGeometry::groups
    std::int32_t material = -1;   ///< index into CObjGeometry::materials, -1: none is named
    std::uint32_t smoothing = 0;  ///< the group's number as the file has it, 0: off
};

/** What an OBJ file says, as flat arrays. Corners of all faces stand one after another; cornerTexCoords
 * and cornerNormals are either empty or as long as cornerPositions. Every index is valid, or -1 for
 * none; a face with a position of -1 is broken and must be left out. Coordinates are the file's own
 * (usually +Y up) and finite. */
struct CObjGeometry {
    std::vector<CVec3> positions;
    std::vector<CVec2> texCoords;
    std::vector<CVec3> normals;  ///< of any length, zero where the file has no usable one
    std::vector<std::int32_t> cornerPositions;
    std::vector<std::int32_t> cornerTexCoords;
    std::vector<std::int32_t> cornerNormals;
    std::vector<std::uint32_t> faceEnds;  ///< one past the last corner of each face
    std::vector<CObjSegment> segments;
    std::vector<std::string> groups;     ///< all different; object and group name, joined
    std::vector<std::string> materials;  ///< as usemtl names them
    std::vector<std::string> libraries;  ///< what mtllib lines say, whole lines

    bool smoothingStated = false;    ///< an s line, even "s off", stands before a face
    bool tooManyNames = false;       ///< groups beyond our limit share one, materials beyond it are ignored
    std::size_t brokenFaces = 0;     ///< left out: positions that are not there, or are no numbers
    std::size_t brokenElements = 0;  ///< the same for points and lines
    std::size_t solidPoints = 0, solidLines = 0;  ///< turned into faces of small solids
    std::size_t crowdedOut = 0;  ///< points and lines left out beside faces, over the limit of triangles

    [[nodiscard]] std::uint32_t FaceBegin(std::size_t face) const {
        return face == 0 ? 0 : faceEnds[face - 1];
    }
};
