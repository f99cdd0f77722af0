// SPDX-License-Identifier: MIT
#include "engine/meshes/CShape.h"

#include <utility>

CLevelBuffers CLevelBuffers::Upload(CGlCurrent& gl, CMeshLevel level, bool keepArrays) {
    CLevelBuffers result;
    if (level.HasOwnVertices()) {
        CPreparedMesh mesh;
        std::swap(mesh.vertices, level.vertices);
        std::swap(mesh.texCoords, level.texCoords);
        std::swap(mesh.indices16, level.indices16);
        std::swap(mesh.indices32, level.indices32);
        mesh.batches = level.batches;
        result.own.Upload(gl, mesh);
        std::swap(mesh.vertices, level.vertices);
        std::swap(mesh.indices16, level.indices16);
        std::swap(mesh.indices32, level.indices32);
    } else if (level.indices16.empty()) {
        result.indices.Fill(gl, CGlBuffer::ETarget::Indices, level.indices32.data(), level.Bytes());
    } else {
        result.indices.Fill(gl, CGlBuffer::ETarget::Indices, level.indices16.data(), level.Bytes());
    }
    if (!keepArrays) {
        level.vertices = {};
        level.indices16 = {};
        level.indices32 = {};
    }
    result.level = std::move(level);
    return result;
}

void CShape::Bind(CGlCurrent& gl) const {
    if (indices == nullptr) return vertices->Bind(gl);
    vertices->BindVertices(gl);
    indices->Bind(gl, CGlBuffer::ETarget::Indices);
}
