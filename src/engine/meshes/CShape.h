// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "engine/meshes/CMeshBuffers.h"
#include "engine/plan/triangle_order.h"
#include "model/levels/CMeshLevels.h"

/** What of a node is drawn: the mesh itself, one of its levels (1, 2, ...), or its box. */
constexpr int kFullLevel = 0, kBoxLevel = -1;

/** One level of a mesh on the GPU. */
struct CLevelBuffers {
    CMeshBuffers own;   ///< of a level with vertices of its own
    CGlBuffer indices;  ///< else: into the mesh's vertices
    CMeshLevel level;   ///< without the arrays, where nothing of the mesh is ever sorted

    /** Uploads the level. keepArrays: they will be needed to sort triangles. */
    static CLevelBuffers Upload(CGlCurrent& gl, CMeshLevel level, bool keepArrays);
    [[nodiscard]] bool HasOwnVertices() const { return own.Bytes() > 0; }
    [[nodiscard]] std::size_t Bytes() const { return own.Bytes() + indices.Bytes(); }
};

/** The buffers and batches of one form of a mesh: how it is drawn, and what is sorted. Refers to them. */
struct CShape {
    const CMeshBuffers* vertices = nullptr;
    const CGlBuffer* indices = nullptr;  ///< null: those of the vertices' mesh
    const std::vector<CPreparedBatch>* batches = nullptr;
    CSortSource sorting;

    void Bind(CGlCurrent& gl) const;
};
