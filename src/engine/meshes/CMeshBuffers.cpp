// SPDX-License-Identifier: MIT
#include "engine/meshes/CMeshBuffers.h"

#include <algorithm>

#include "engine/gl/gl_api.h"

namespace {

template <class T>
void FillFrom(CGlCurrent& gl, CGlBuffer& buffer, CGlBuffer::ETarget target, const std::vector<T>& data,
              EArrays arrays) {
    const std::size_t bytes = data.size() * sizeof(T);
    if (arrays == EArrays::InPlace) return buffer.FillInPlace(gl, target, data.data(), bytes);
    buffer.Fill(gl, target, data.data(), bytes);
}

const void* IndicesOf(const CPreparedMesh& mesh) {
    return mesh.indices16.empty() ? static_cast<const void*>(mesh.indices32.data()) : mesh.indices16.data();
}

bool SameCut(const CPreparedBatch& a, const CPreparedBatch& b) {
    return a.firstIndex == b.firstIndex && a.indexCount == b.indexCount;
}

const void* Offset(std::size_t bytes) {
    return reinterpret_cast<const void*>(bytes);
}

}  // namespace

void CMeshBuffers::Upload(CGlCurrent& gl, const CPreparedMesh& mesh, EArrays arrays) {
    m_arrays = arrays;
    FillFrom(gl, m_vertices, CGlBuffer::ETarget::Vertices, mesh.vertices, arrays);
    m_texCoords = {};
    if (!mesh.texCoords.empty() && mesh.texCoords.size() >= mesh.vertices.size()) {
        FillFrom(gl, m_texCoords, CGlBuffer::ETarget::Vertices, mesh.texCoords, arrays);
    }
    m_source = mesh.vertices.data();
    m_texCoordSource = mesh.texCoords.data();
    m_stamp = mesh.stamp;
    m_vertexCount = static_cast<std::uint32_t>(mesh.vertices.size());
    m_indexCount = 0;
    (void)RefreshIndices(gl, mesh);
}

bool CMeshBuffers::HoldsVerticesOf(const CPreparedMesh& mesh) const {
    if (m_vertexCount == 0) return false;
    if (m_arrays == EArrays::InPlace && m_texCoordSource != mesh.texCoords.data()) return false;
    return m_stamp == mesh.stamp && m_source == mesh.vertices.data() && m_vertexCount == mesh.vertices.size();
}

bool CMeshBuffers::RefreshIndices(CGlCurrent& gl, const CPreparedMesh& mesh) {
    const bool same =
        m_indexCount == mesh.IndexCount() &&
        std::equal(m_batches.begin(), m_batches.end(), mesh.batches.begin(), mesh.batches.end(), SameCut);
    m_batches = mesh.batches;
    const bool moved = m_arrays == EArrays::InPlace && m_indexSource != IndicesOf(mesh);
    if (!same || moved) FillIndices(gl, mesh);
    return !same;
}

void CMeshBuffers::FillIndices(CGlCurrent& gl, const CPreparedMesh& mesh) {
    m_indexCount = mesh.IndexCount();
    m_indexSource = IndicesOf(mesh);
    m_wide = mesh.indices16.empty();
    if (m_wide) {
        FillFrom(gl, m_indices, CGlBuffer::ETarget::Indices, mesh.indices32, m_arrays);
    } else {
        FillFrom(gl, m_indices, CGlBuffer::ETarget::Indices, mesh.indices16, m_arrays);
    }
}

void CMeshBuffers::Bind(CGlCurrent& gl) const {
    BindVertices(gl);
    m_indices.Bind(gl, CGlBuffer::ETarget::Indices);
}

void CMeshBuffers::BindVertices(CGlCurrent& gl) const {
    if (HasTexCoords()) {
        m_texCoords.Bind(gl, CGlBuffer::ETarget::Vertices);
        glTexCoordPointer(2, GL_FLOAT, 0, nullptr);
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    } else {
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    }
    m_vertices.Bind(gl, CGlBuffer::ETarget::Vertices);
    glVertexPointer(3, GL_FLOAT, sizeof(CPreparedVertex), nullptr);
    glNormalPointer(GL_SHORT, sizeof(CPreparedVertex), Offset(offsetof(CPreparedVertex, normal)));
}

void CMeshBuffers::Draw(CGlCurrent&, std::uint32_t firstIndex, std::uint32_t count) const {
    const std::size_t size = m_wide ? 4 : 2;
    glDrawRangeElements(GL_TRIANGLES, 0, m_vertexCount - 1, static_cast<GLsizei>(count),
                        m_wide ? GL_UNSIGNED_INT : GL_UNSIGNED_SHORT, Offset(firstIndex * size));
}
