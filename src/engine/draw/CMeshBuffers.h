// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "engine/gl/CGlBuffer.h"
#include "model/prepare/CPreparedScene.h"

/** One mesh on the GPU. */
class CMeshBuffers {
  public:
    void Upload(CGlCurrent& gl, const CPreparedMesh& mesh);
    /** True while it holds that mesh's vertices (told by its stamp, and where they lie, and how many). */
    [[nodiscard]] bool HoldsVerticesOf(const CPreparedMesh& mesh) const;
    /** Uploads the indices anew if the batches cut them differently than before: true. */
    bool RefreshIndices(CGlCurrent& gl, const CPreparedMesh& mesh);

    /** Makes it the source of drawing: vertex, normal and texture coordinate arrays, and indices. */
    void Bind(CGlCurrent& gl) const;
    /** Draws a run of triangles with the bound arrays; indices come from the bound index buffer. */
    void Draw(CGlCurrent& gl, std::uint32_t firstIndex, std::uint32_t count) const;

    [[nodiscard]] bool HasTexCoords() const { return !m_texCoords.IsEmpty(); }
    [[nodiscard]] std::size_t Bytes() const {
        return m_vertices.Bytes() + m_texCoords.Bytes() + m_indices.Bytes();
    }

  private:
    CGlBuffer m_vertices, m_texCoords, m_indices;
    std::vector<CPreparedBatch> m_batches;
    const void* m_source = nullptr;  ///< never read
    std::uint64_t m_stamp = 0;
    std::uint32_t m_vertexCount = 0, m_indexCount = 0;
    bool m_wide = false;  ///< 32-bit indices
};
