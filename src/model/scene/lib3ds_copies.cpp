// SPDX-License-Identifier: MIT
#include "model/scene/lib3ds_copies.h"
#include "model/scene/lib3ds_name.h"

#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

#include <algorithm>
#include <cstring>

#include "model/scene/lib3ds_name.h"

namespace lib3ds_copies {
namespace {

template <class T>
void CopyArray(T* to, const T* from, std::size_t count) {
    if (count > 0) std::memcpy(to, from, count * sizeof(T));
}

}  // namespace

Lib3dsMesh* CopyMeshHeader(const Lib3dsMesh& mesh, std::string_view name) {
    Lib3dsMesh* copy = lib3ds_mesh_new("");
    if (copy == nullptr) return nullptr;
    if (mesh.flags > 0 && !lib3ds_mesh_new_flag_list(copy, mesh.flags)) {
        lib3ds_mesh_free(copy);
        return nullptr;
    }
    CopyArray(copy->flagL, mesh.flagL, mesh.flags);
    copy->object_flags = mesh.object_flags;
    copy->color = mesh.color;
    std::memcpy(copy->matrix, mesh.matrix, sizeof copy->matrix);
    copy->box_map = mesh.box_map;
    copy->map_data = mesh.map_data;
    CopyName(copy->name, name);
    return copy;
}

Lib3dsMesh* CopyMesh(const Lib3dsMesh& mesh, std::string_view name) {
    Lib3dsMesh* copy = CopyMeshHeader(mesh, name);
    if (copy == nullptr) return nullptr;
    const bool made = (mesh.points == 0 || lib3ds_mesh_new_point_list(copy, mesh.points)) &&
                      (mesh.texels == 0 || lib3ds_mesh_new_texel_list(copy, mesh.texels)) &&
                      (mesh.faces == 0 || lib3ds_mesh_new_face_list(copy, mesh.faces));
    if (!made) {
        lib3ds_mesh_free(copy);
        return nullptr;
    }
    CopyArray(copy->pointL, mesh.pointL, mesh.points);
    for (Lib3dsDword i = 0; i < mesh.texels; ++i) CopyArray(copy->texelL[i], mesh.texelL[i], 2);
    CopyArray(copy->faceL, mesh.faceL, mesh.faces);
    return copy;
}

Lib3dsMaterial* CopyMaterial(const Lib3dsMaterial& material, std::string_view name) {
    Lib3dsMaterial* copy = lib3ds_material_new();
    if (copy == nullptr) return nullptr;
    *copy = material;
    copy->next = nullptr;
    copy->user.p = nullptr;
    CopyName(copy->name, name);
    return copy;
}

bool SameLook(const Lib3dsMaterial& a, const Lib3dsMaterial& b) {
    // From the first value after the name to the end; both come from zeroed memory or from a structure copy.
    constexpr std::size_t start = offsetof(Lib3dsMaterial, ambient);
    const auto* bytesA = reinterpret_cast<const unsigned char*>(&a);
    const auto* bytesB = reinterpret_cast<const unsigned char*>(&b);
    return std::memcmp(bytesA + start, bytesB + start, sizeof(Lib3dsMaterial) - start) == 0;
}

}  // namespace lib3ds_copies
