// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "engine/gl/CGlBuffer.h"
#include "model/prepare/CPreparedScene.h"

/** Whether buffers have copies of a mesh's arrays, or read them where they lie, see CGlBuffer::FillInPlace. */
enum class EArrays { Copied, InPlace };

/** One mesh on the GPU. */
class CMeshBuffers {
  public:
    void Upload(CGlCurrent& gl, const CPreparedMesh& mesh, EArrays arrays = EArrays::Copied);
    /** True while the buffers hold that mesh's vertices; compares the mesh's stamp and the address and number
     * of its vertices. */
    [[nodiscard]] bool HoldsVerticesOf(const CPreparedMesh& mesh) const;
    /** Uploads the indices again if the mesh's batches have changed; then true. Those that are read in place are followed to
     * where they lie now. */
    bool RefreshIndices(CGlCurrent& gl, const CPreparedMesh& mesh);

    /** Binds the arrays of vertices, normals and texture coordinates and the index buffer for drawing. */
    void Bind(CGlCurrent& gl) const;
    /** Binds all but the index buffer. */
    void BindVertices(CGlCurrent& gl) const;
    /** Draws a run of triangles with the bound arrays; indices come from the bound index buffer. */
    void Draw(CGlCurrent& gl, std::uint32_t firstIndex, std::uint32_t count) const;

    [[nodiscard]] bool HasTexCoords() const { return !m_texCoords.IsEmpty(); }
    [[nodiscard]] std::size_t Bytes() const {
        return m_vertices.Bytes() + m_texCoords.Bytes() + m_indices.Bytes();
    }

  private:
    CGlBuffer m_vertices, m_texCoords, m_indices;
    std::vector<CPreparedBatch> m_batches;
    void FillIndices(CGlCurrent& gl, const CPreparedMesh& mesh);

    const void* m_source = nullptr;  ///< never read; the same for the next two
    const void* m_texCoordSource = nullptr;
    const void* m_indexSource = nullptr;
    std::uint64_t m_stamp = 0;
    std::uint32_t m_vertexCount = 0, m_indexCount = 0;
    bool m_wide = false;  ///< 32-bit indices
    EArrays m_arrays = EArrays::Copied;
};
