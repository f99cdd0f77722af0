// SPDX-License-Identifier: MIT
#include "model/edit/CSceneEdits.h"

#include <lib3ds/file.h>
#include <lib3ds/mesh.h>
#include <lib3ds/node.h>

#include <algorithm>
#include <cstring>

#include "base/math/rotation_of_angles.h"
#include "base/text/lng.h"
#include "model/edit/node_edits.h"
#include "model/open/CSceneReader.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/prepare_scene.h"
#include "model/scene/CScene.h"
#include "model/scene/lib3ds_copies.h"
#include "model/scene/lib3ds_name.h"
#include "model/scene/mesh_access.h"

namespace {

CError NoNode(std::string_view node) {
    return {EErrorCode::NotFound, lng::Mark("the scene has no such object"), std::string(node)};
}

CError NoMemory() {
    return {EErrorCode::TooLarge, lng::Mark("not enough memory for the edit"), {}};
}

CMat4 ParentWorld(const CPreparedScene& prepared, const Lib3dsNode* source) {
    const auto node = std::find_if(prepared.nodes.begin(), prepared.nodes.end(),
                                   [source](const CPreparedNode& n) { return n.source == source; });
    if (node == prepared.nodes.end() || node->parent < 0) return {};
    return prepared.nodes[static_cast<std::size_t>(node->parent)].world;
}

/** The mesh's matrix without its mirroring; the identity for one that flattens. */
CMat4 UnmirroredPlace(const Lib3dsMesh& mesh) {
    const CMat4 matrix = CMat4::FromLib3ds(mesh.matrix);
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

}  // namespace

CSceneEdits::CSceneEdits(CScene& scene, const CPreparedScene& prepared) : m_scene(scene) {
    Index(prepared);
}

void CSceneEdits::Index(const CPreparedScene& prepared) {
    m_targets.clear();
    for (const ENodeKind kind :
         {ENodeKind::Object, ENodeKind::Dummy}) {  // an object wins over a dummy of its name
        for (const CPreparedNode& node : prepared.nodes) {
            if (node.kind != kind) continue;
            Lib3dsMesh* mesh =
                node.mesh < 0 ? nullptr : m_scene.Meshes()[static_cast<std::size_t>(node.mesh)].mesh;
            if (node.source == nullptr && mesh == nullptr) continue;
            const void* key = node.source;
            if (key == nullptr) key = mesh;
            m_targets.try_emplace(node.name, CTarget{node.source, mesh, node.isPlacedByMesh});
            m_names.try_emplace(key, node.name);
        }
    }
}

void CSceneEdits::Renew(CPreparedScene& prepared) {
    for (CPreparedNode& node : prepared.nodes) {
        const void* key = node.source;
        if (key == nullptr && node.mesh >= 0)
            key = m_scene.Meshes()[static_cast<std::size_t>(node.mesh)].mesh;
        const auto known = m_names.find(key);
        if (known != m_names.end()) node.name = known->second;
    }
    Index(prepared);
    m_needsPreparing = false;
}

CSceneEdits::CTarget* CSceneEdits::Find(std::string_view node) {
    const auto found = m_targets.find(node);
    return found == m_targets.end() ? nullptr : &found->second;
}

void CSceneEdits::Changed() {
    m_scene.RefreshMeshes();
    m_needsPreparing = true;
}

bool CSceneEdits::IsShared(const Lib3dsMesh* mesh) const {
    return std::count_if(m_targets.begin(), m_targets.end(),
                         [mesh](const auto& entry) { return entry.second.mesh == mesh; }) > 1;
}

void CSceneEdits::DropMesh(Lib3dsMesh* mesh) {
    m_names.erase(mesh);
    lib3ds_file_remove_mesh(m_scene.Header(), mesh);
    lib3ds_mesh_free(mesh);
}

void CSceneEdits::HideMorphTargets(const Lib3dsNode& node) {
    // Nothing shows them while a node morphs into them; without it they would appear.
    for (const Lib3dsMorphKey* key = node.data.object.morph_track.keyL; key != nullptr; key = key->next) {
        Lib3dsMesh* mesh = lib3ds_file_mesh_by_name(m_scene.Header(), key->name);
        const auto shows = [mesh](const auto& entry) { return entry.second.mesh == mesh; };
        if (mesh == nullptr || std::any_of(m_targets.begin(), m_targets.end(), shows)) continue;
        mesh->object_flags |= LIB3DS_OBJECT_HIDDEN;
    }
}

CStatus CSceneEdits::DeleteNode(std::string_view name) {
    CTarget* target = Find(name);
    if (target == nullptr) return NoNode(name);
    Lib3dsFile* file = m_scene.File();
    Lib3dsNode* node = target->node;
    const bool dropMesh = target->mesh != nullptr && !IsShared(target->mesh);
    if (node != nullptr && target->mesh == nullptr && node->childs != nullptr) {
        return CError{EErrorCode::BadArgument, lng::Mark("only its children would be left of it"),
                      std::string(name)};
    }
    if (dropMesh) DropMesh(target->mesh);
    if (node != nullptr) {
        m_names.erase(node);
        HideMorphTargets(*node);
        if (node->childs != nullptr) {
            CopyName(node->data.object.instance, name);
            CopyName(node->name, "$$$DUMMY");
        } else {
            lib3ds_file_remove_node(file, node);
            lib3ds_node_free(node);
        }
    }
    m_targets.erase(m_targets.find(name));
    Changed();
    return CDone{};
}

CStatus CSceneEdits::TransformMesh(CTarget& target, const CMat4& transform) {
    (void)m_scene.File();  // completes the mesh's arrays
    if (!OwnMesh(target)) return NoMemory();
    node_edits::TransformMesh(*target.mesh, transform);
    Changed();
    return CDone{};
}

CStatus CSceneEdits::MoveNode(const CPreparedScene& prepared, std::string_view name, CVec3 offset) {
    CTarget* target = Find(name);
    if (target == nullptr) return NoNode(name);
    if (!IsFinite(offset))
        return CError{EErrorCode::BadArgument, lng::Mark("the distance is not a number"), std::string(name)};
    if (target->isPlacedByMesh) return TransformMesh(*target, CMat4::Translation(offset));
    const CMat4 parent = ParentWorld(prepared, target->node);
    node_edits::MoveTracks(*target->node, parent.AffineInverse().TransformDirection(offset));
    return CDone{};
}

CStatus CSceneEdits::RotateNode(const CPreparedScene& prepared, std::string_view name, CVec3 anglesDeg) {
    CTarget* target = Find(name);
    if (target == nullptr) return NoNode(name);
    if (!IsFinite(anglesDeg))
        return CError{EErrorCode::BadArgument, lng::Mark("the angles are not numbers"), std::string(name)};
    const CMat4 turn = RotationOfAngles(anglesDeg.x, anglesDeg.y, anglesDeg.z);
    if (target->isPlacedByMesh) {
        (void)m_scene.File();
        const CVec3 point = node_edits::TurningPoint(*target->mesh);
        return TransformMesh(*target, CMat4::Translation(point) * turn * CMat4::Translation(-point));
    }
    const CMat4 parent = ParentWorld(prepared, target->node);
    node_edits::RotateTracks(*target->node, node_edits::RotationInParent(parent, turn));
    return CDone{};
}

CStatus CSceneEdits::ReplaceNode(std::string_view name, std::string_view path, std::string_view newNode) {
    CTarget* target = Find(name);
    if (target == nullptr || target->mesh == nullptr) return NoNode(name);
    CResult<CScene> read = CSceneReader::ReadFile(path);
    if (!read) return read.Error();
    CScene& other = read.Value();
    const CPreparedScene prepared = PrepareScene(other, {.threads = 0, .loadTextures = false});
    const CPreparedNode* chosen = Choose(prepared, newNode, name);
    if (chosen == nullptr)
        return CError{EErrorCode::NotFound, lng::Mark("the file has no such object"), std::string(path)};
    (void)other.File();
    (void)m_scene.File();
    const Lib3dsMesh& source = *other.Meshes()[static_cast<std::size_t>(chosen->mesh)].mesh;
    Lib3dsMesh* mesh =
        lib3ds_copies::CopyMesh(source, lib3ds_copies::UnusedMeshName(*m_scene.Header(), source.name));
    if (mesh == nullptr) return NoMemory();
    TakeMaterials(other, *mesh);
    PutMesh(*target, mesh, chosen->meshToNode * FlipOfMesh(source));
    Changed();
    return CDone{};
}

void CSceneEdits::PutMesh(CTarget& target, Lib3dsMesh* mesh, const CMat4& meshToNode) {
    // The new mesh stands in the old one's frame with its own origin, so that no pivot is left to
    // tell them apart.
    const CMat4 place = UnmirroredPlace(*target.mesh);
    node_edits::TransformMesh(*mesh, place * meshToNode);
    std::memcpy(mesh->matrix, place.m.data(), sizeof mesh->matrix);
    if (!IsShared(target.mesh)) {
        const std::string meshName = target.mesh->name;
        const std::string answersTo = target.node == nullptr ? m_names[target.mesh] : std::string();
        DropMesh(target.mesh);
        CopyName(mesh->name, meshName);
        if (target.node == nullptr) m_names[mesh] = answersTo;
    }
    lib3ds_file_insert_mesh(m_scene.Header(), mesh);
    target.mesh = mesh;
    if (target.node == nullptr) return;
    CopyName(target.node->name, mesh->name);
    std::fill_n(target.node->data.object.pivot, 3, 0.0f);
}
