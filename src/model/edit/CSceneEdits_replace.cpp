// SPDX-License-Identifier: MIT
#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>
#include <lib3ds/node.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <new>

#include "base/text/lng.h"
#include "model/edit/CSceneEdits.h"
#include "model/open/CSceneReader.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/prepare_materials.h"
#include "model/prepare/prepare_mesh.h"
#include "model/prepare/prepare_scene.h"
#include "model/scene/lib3ds_copies.h"
#include "model/scene/lib3ds_list.h"
#include "model/scene/lib3ds_name.h"
#include "model/scene/mesh_access.h"
#include "model/scene/mesh_arrays.h"

namespace {

/** A matrix without its mirroring; the identity for one that flattens. */
CMat4 Unmirrored(const CMat4& matrix) {
    bool invertible = false;
    (void)matrix.AffineInverse(&invertible);
    if (!invertible) return {};
    return matrix.Determinant3() < 0 ? matrix * CMat4::Scale({-1, 1, 1}) : matrix;
}

/** The node to take from another scene: by any of its names, or the first one that draws something. */
const CPreparedNode* Choose(const CPreparedScene& scene, std::string_view wanted, std::string_view fallback) {
    const CPreparedNode* first = nullptr;
    const CPreparedNode* same = nullptr;
    for (const CPreparedNode& node : scene.nodes) {
        if (node.kind != ENodeKind::Object || node.mesh < 0) continue;
        const std::string& meshName = scene.meshes[static_cast<std::size_t>(node.mesh)].name;
        if (!wanted.empty() && (node.name == wanted || meshName == wanted)) return &node;
        if (same == nullptr && (node.name == fallback || meshName == fallback)) same = &node;
        if (first == nullptr) first = &node;
    }
    if (!wanted.empty()) return nullptr;
    return same != nullptr ? same : first;
}

/** A mesh with the arrays of a view, its points carried to where a matrix stands. */
CNewMesh Carried(const CMeshView& from, const CMat4& transform, const CMat4& matrix) {
    CNewMesh made{CLib3dsMeshPtr(lib3ds_copies::CopyMeshHeader(*from.mesh, from.mesh->name)), {}};
    if (!made.mesh || !FillMesh(from, {}, *made.mesh)) throw std::bad_alloc();
    const CMat4 carry = transform * FlipOf(from.matrix);
    for (Lib3dsDword i = 0; i < made.mesh->points; ++i) {
        auto& pos = made.mesh->pointL[i].pos;
        const CVec3 p = carry.TransformPoint({pos[0], pos[1], pos[2]});
        pos[0] = p.x;
        pos[1] = p.y;
        pos[2] = p.z;
    }
    std::memcpy(made.mesh->matrix, matrix.m.data(), sizeof made.mesh->matrix);
    made.view.mesh = made.mesh.get();
    made.view.matrix = matrix;
    PointAtLists(made.view);
    made.view.faceMaterials = from.faceMaterials;
    made.view.faceNamesAreOld = true;
    return made;
}

}  // namespace

CStatus CSceneEdits::Do(const CReplaceEdit& edit) {
    const auto node = m_edited.FindNode(edit.node);
    if (!node || m_prepared.nodes[*node].mesh < 0)
        return CError{EErrorCode::NotFound, lng::Mark("the scene has no such object"), edit.node};
    const CResult<CScene> read = CSceneReader::ReadFile(edit.path);
    if (!read) return read.Error();
    const CScene& other = read.Value();
    const CPreparedScene outlines = PrepareScene(other, {.loadTextures = false, .outlines = true});
    const CPreparedNode* chosen = Choose(outlines, edit.newNode, edit.node);
    if (chosen == nullptr)
        return CError{EErrorCode::NotFound, lng::Mark("the file has no such object"), edit.path};
    // The new mesh keeps its own origin in the old one's coordinates, so the node needs no pivot.
    const auto mesh = static_cast<std::size_t>(m_prepared.nodes[*node].mesh);
    const CMat4 place = Unmirrored(m_scene.MatrixOf(mesh));
    CNewMesh made =
        Carried(other.Meshes()[static_cast<std::size_t>(chosen->mesh)], place * chosen->meshToNode, place);
    AdoptMaterials(other, made.view);
    PutMesh(*node, std::move(made), place);
    return CDone{};
}

void CSceneEdits::AdoptMaterials(const CScene& from, CMeshView& view) {
    const auto materials = ListOf(from.Header()->materials);
    std::map<std::uint16_t, std::uint16_t> adopted;
    for (std::uint16_t& material : view.faceMaterials) {
        if (material == CMeshView::kNoMaterial) continue;
        const auto [known, isNew] = adopted.try_emplace(material);
        if (isNew) known->second = static_cast<std::uint16_t>(AdoptMaterial(from, *materials[material]));
        material = known->second;
    }
}

std::uint32_t CSceneEdits::AdoptMaterial(const CScene& from, const Lib3dsMaterial& material) {
    Lib3dsMaterial copy = material;
    AdoptPictures(from, copy);
    for (std::uint32_t i = 0; i < m_edited.NoMaterial(); ++i) {
        if (m_edited.NameInFile(i) == material.name && lib3ds_copies::SameLook(*m_edited.Material(i), copy))
            return i;
    }
    CPreparedMaterial look =
        PrepareMaterial(copy, [this](const char* name) { return m_edited.TextureOf(name); });
    // The last one has two sides only where the scene as a whole got them when it was opened.
    look.twoSided = look.twoSided || m_prepared.materials.back().twoSided;
    return m_edited.AddMaterial(copy, std::move(look), material.name);
}

void CSceneEdits::PutMesh(std::size_t node, CNewMesh mesh, const CMat4& place) {
    const CMeshView& view = mesh.view;
    const auto old = static_cast<std::size_t>(m_prepared.nodes[node].mesh);
    const std::string oldName = m_prepared.meshes[old].name;
    std::string name = oldName;
    if (m_edited.IsShared(old)) {
        name = m_edited.NewMeshName(mesh.mesh->name);
    } else {
        m_edited.TakeMeshOut(old);
    }
    CopyName(mesh.mesh->name, name);
    const auto usesMap = [this](std::uint16_t material) {
        return material != CMeshView::kNoMaterial && UsesTexCoords(m_prepared.materials[material]);
    };
    CPreparedMesh prepared =
        PrepareMesh(view, m_edited.NoMaterial(),
                    std::any_of(view.faceMaterials.begin(), view.faceMaterials.end(), usesMap));
    m_edited.AddMesh(std::move(mesh), std::move(prepared));
    CPreparedNode& changed = m_edited.ChangeNode(node);
    changed.mesh = static_cast<int>(m_prepared.meshes.size()) - 1;
    changed.pivot = {};
    changed.meshToNode = place.AffineInverse();
    if (changed.isPlacedByMesh) changed.fixedWorld = place;
    if (changed.source == nullptr) return;
    Lib3dsNode& source = m_edited.ChangeSource(node);
    CopyName(source.name, name);
    std::fill_n(source.data.object.pivot, 3, 0.0f);
}
