// SPDX-License-Identifier: MIT
#include "model/scene/mesh_arrays.h"

#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

#include <cmath>
#include <cstddef>
#include <cstring>

#include "base/math/CMatrix.h"
#include "model/scene/CMaterialIndex.h"
#include "model/scene/CScene.h"
#include "model/scene/mesh_access.h"

namespace {
/** Beyond it a bounding sphere would overflow a float. */
constexpr float kMaxCoordinate = 1e15f;

bool IsUsable(CVec3 p) {
    return std::abs(p.x) < kMaxCoordinate && std::abs(p.y) < kMaxCoordinate && std::abs(p.z) < kMaxCoordinate;
}

/** Views are read-only to everybody else; the repair is the one place that writes through them. */
std::byte* Writable(const std::byte* p) {
    return const_cast<std::byte*>(p);
}

/** Sets unusable points to 0; the result marks them, and is empty when there were none. */
std::vector<bool> RepairPoints(CMeshView& view, CNoteList& notes) {
    std::vector<bool> bad;
    for (std::size_t i = 0; i < view.pointCount; ++i) {
        if (IsUsable(PointOf(view, i))) continue;
        if (bad.empty()) bad.resize(view.pointCount);
        bad[i] = true;
        std::memset(Writable(view.points + i * view.pointStride), 0, 12);
    }
    if (!bad.empty())
        notes.Repaired("Vertices that are not finite were left out", CNoteList::Printable(view.mesh->name));
    return bad;
}

void RepairFaces(CMeshView& view, const std::vector<bool>& badPoints, CNoteList& notes) {
    bool outOfRange = false;
    for (std::size_t i = 0; i < view.faceCount; ++i) {
        const CFaceIndices face = FaceOf(view, i);
        const bool inside = face.a < view.pointCount && face.b < view.pointCount && face.c < view.pointCount;
        if (inside && (badPoints.empty() || !(badPoints[face.a] || badPoints[face.b] || badPoints[face.c])))
            continue;
        outOfRange |= !inside;
        std::memset(Writable(view.faces + i * view.faceStride), 0, 6);
    }
    if (outOfRange)
        notes.Repaired("Faces that refer to missing vertices were left out",
                       CNoteList::Printable(view.mesh->name));
}

void RepairTexels(CMeshView& view) {
    for (std::size_t i = 0; i < view.texelCount; ++i) {
        const CVec2 uv = TexelOf(view, i);
        // Beyond a million repetitions nothing of the picture is left in a float.
        if (std::abs(uv.x) < 1e6f && std::abs(uv.y) < 1e6f) continue;
        std::memset(Writable(view.texels + i * view.texelStride), 0, 8);
    }
}
}  // namespace

void RepairMeshArrays(CMeshView& view, CNoteList& notes) {
    const std::vector<bool> badPoints = RepairPoints(view, notes);
    if (view.pointCount == 0) view.faceCount = 0;  // not even index 0 is there
    RepairFaces(view, badPoints, notes);
    RepairTexels(view);
}

void PointAtLists(CMeshView& view) {
    const Lib3dsMesh& mesh = *view.mesh;
    view.points = reinterpret_cast<const std::byte*>(mesh.pointL);
    view.pointStride = sizeof(Lib3dsPoint);
    view.pointCount = mesh.points;
    view.pointsUnflipped = false;
    view.isFilled = true;
    const bool hasTexels = mesh.texels > 0 && mesh.texels >= mesh.points;
    view.texels = hasTexels ? reinterpret_cast<const std::byte*>(mesh.texelL) : nullptr;
    view.texelStride = sizeof(Lib3dsTexel);
    view.texelCount = hasTexels ? mesh.texels : 0;
    view.faceCount = mesh.faces;
    if (mesh.faces == 0) return;
    static_assert(offsetof(Lib3dsFace, flags) == offsetof(Lib3dsFace, points) + 6);
    view.faces = reinterpret_cast<const std::byte*>(mesh.faceL[0].points);
    view.smoothing = reinterpret_cast<const std::byte*>(&mesh.faceL[0].smoothing);
    view.faceStride = view.smoothingStride = sizeof(Lib3dsFace);
}

CMeshView ViewOfMesh(Lib3dsMesh& mesh, const CMaterialIndex& materials) {
    CMeshView view;
    view.mesh = &mesh;
    view.matrix = CMat4::FromLib3ds(mesh.matrix);
    PointAtLists(view);
    if (mesh.faces == 0) return view;

    view.faceMaterials.reserve(mesh.faces);
    std::string_view last = "";
    std::uint16_t lastIndex = CMeshView::kNoMaterial;
    for (std::size_t i = 0; i < mesh.faces; ++i) {
        const std::string_view name = mesh.faceL[i].material;
        if (name != last) {
            last = name;
            lastIndex = materials.Find(name);
        }
        view.faceMaterials.push_back(lastIndex);
    }
    return view;
}

void WriteFaceMaterials(const CMeshView& view, std::span<Lib3dsMaterial* const> materials, Lib3dsMesh& mesh) {
    for (std::size_t i = 0; i < view.faceCount; ++i) {
        auto& name = mesh.faceL[i].material;
        const std::uint16_t material =
            view.faceMaterials.empty() ? CMeshView::kNoMaterial : view.faceMaterials[i];
        if (material < materials.size()) {
            std::memcpy(name, materials[material]->name, sizeof name);
        } else {
            std::memset(name, 0, sizeof name);
        }
    }
}

namespace {
void StorePoint(const CVec3& p, Lib3dsPoint& point) {
    point.pos[0] = p.x;
    point.pos[1] = p.y;
    point.pos[2] = p.z;
}

void FillPoints(const CMeshView& view, Lib3dsMesh& mesh) {
    const CMat4 flip = view.pointsUnflipped ? FlipOf(view.matrix) : CMat4{};
    for (std::size_t i = 0; i < view.pointCount; ++i) {
        CVec3 p = PointOf(view, i);
        if (view.pointsUnflipped) p = flip.TransformPoint(p);
        StorePoint(p, mesh.pointL[i]);
    }
}

void FillFaces(const CMeshView& view, Lib3dsMesh& mesh) {
    for (std::size_t i = 0; i < view.faceCount; ++i) {
        Lib3dsFace& face = mesh.faceL[i];
        std::memcpy(face.points, view.faces + i * view.faceStride, 8);  // three indices and the flags
        face.smoothing = SmoothingOf(view, i);
        const CVec3 a = PointOf(view, face.points[0]);
        const CVec3 normal =
            Normalized(Cross(PointOf(view, face.points[1]) - a, PointOf(view, face.points[2]) - a));
        face.normal[0] = normal.x;
        face.normal[1] = normal.y;
        face.normal[2] = normal.z;
    }
}
}  // namespace

bool FillMesh(const CMeshView& view, std::span<Lib3dsMaterial* const> materials, Lib3dsMesh& mesh) {
    const auto points = static_cast<Lib3dsDword>(view.pointCount),
               faces = static_cast<Lib3dsDword>(view.faceCount);
    if (points > 0 && !lib3ds_mesh_new_point_list(&mesh, points)) return false;
    if (view.texelCount > 0 && !lib3ds_mesh_new_texel_list(&mesh, points)) return false;
    if (faces > 0 && !lib3ds_mesh_new_face_list(&mesh, faces)) return false;
    FillPoints(view, mesh);
    for (std::size_t i = 0; i < mesh.texels; ++i)
        std::memcpy(mesh.texelL[i], view.texels + i * view.texelStride, 8);
    FillFaces(view, mesh);
    WriteFaceMaterials(view, materials, mesh);
    return true;
}

void TurnFaces(CMeshView& view) {
    for (std::size_t i = 0; i < view.faceCount; ++i) {
        Lib3dsFace& face = view.mesh->faceL[i];
        std::swap(face.points[1], face.points[2]);
        // The edges go on belonging to the same corners: AB changes places with CA.
        const unsigned ab = face.flags & LIB3DS_FACE_FLAG_VIS_AB, ca = face.flags & LIB3DS_FACE_FLAG_VIS_AC;
        face.flags = static_cast<Lib3dsWord>(
            (face.flags & ~unsigned{LIB3DS_FACE_FLAG_VIS_AB | LIB3DS_FACE_FLAG_VIS_AC}) |
            (ab != 0 ? unsigned{LIB3DS_FACE_FLAG_VIS_AC} : 0u) |
            (ca != 0 ? unsigned{LIB3DS_FACE_FLAG_VIS_AB} : 0u));
    }
    view.facesAreTurned = !view.facesAreTurned;
}

void PlacePoints(CMeshView& view) {
    Lib3dsMesh& mesh = *view.mesh;
    if (view.ownPoints.empty()) {
        view.ownPoints.resize(view.pointCount);
        for (std::size_t i = 0; i < view.pointCount; ++i) view.ownPoints[i] = PointOf(view, i);
        view.points = reinterpret_cast<const std::byte*>(view.ownPoints.data());
        view.pointStride = sizeof(CVec3);
    }
    const CMeshPlacing placing = view.placing.value_or(CMeshPlacing{{}, view.matrix});
    const CMat4 carry = FlipOf(placing.matrix) * placing.points * FlipOf(view.matrix);
    for (std::size_t i = 0; i < view.ownPoints.size(); ++i) {
        StorePoint(view.placing ? carry.TransformPoint(view.ownPoints[i]) : view.ownPoints[i],
                   mesh.pointL[i]);
    }
    std::memcpy(mesh.matrix, placing.matrix.m.data(), sizeof mesh.matrix);
    if ((placing.points.Determinant3() < 0) != view.facesAreTurned) TurnFaces(view);
}
