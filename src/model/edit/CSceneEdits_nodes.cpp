// SPDX-License-Identifier: MIT
#include <lib3ds/mesh.h>
#include <lib3ds/node.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "base/math/rotation_of_angles.h"
#include "base/text/lng.h"
#include "model/edit/CSceneEdits.h"
#include "model/edit/node_edits.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/prepare_scene.h"
#include "model/scene/lib3ds_copies.h"
#include "model/scene/lib3ds_name.h"

namespace {

CError NoNode(const std::string& node) {
    return {EErrorCode::NotFound, lng::Mark("the scene has no such object"), node};
}

}  // namespace

// --- moving and turning ----------------------------------------------------------------------------------

CStatus CSceneEdits::PlaceByMesh(std::size_t node, const CMat4& transform) {
    const std::size_t mesh = m_edited.OwnMesh(node);
    const CMeshView& view = m_scene.Meshes()[mesh];
    const CMeshPlacing old = view.placing.value_or(CMeshPlacing{{}, view.matrix});
    m_edited.PlaceMesh(mesh, {transform * old.points, transform * old.matrix});
    CPreparedNode& changed = m_edited.ChangeNode(node);
    changed.fixedWorld = transform * changed.fixedWorld;
    return CDone{};
}

CStatus CSceneEdits::Do(const CMoveEdit& edit) {
    const auto node = m_edited.FindNode(edit.node);
    if (!node) return NoNode(edit.node);
    if (!IsFinite(edit.offset))
        return CError{EErrorCode::BadArgument, lng::Mark("the distance is not a number"), edit.node};
    const CPreparedNode& at = m_prepared.nodes[*node];
    if (at.isPlacedByMesh) return PlaceByMesh(*node, CMat4::Translation(edit.offset));
    const CMat4 parent = WorldOf(m_prepared, at.parent, m_prepared.currentFrame);
    node_edits::MoveTracks(m_edited.ChangeTracks(*node),
                           parent.AffineInverse().TransformDirection(edit.offset));
    return CDone{};
}

/** The turning point of a node that its mesh places: the origin of the mesh's matrix, or the mesh's middle
 * where that matrix is the identity. */
CVec3 CSceneEdits::TurningPoint(const CPreparedNode& node) const {
    const auto mesh = static_cast<std::size_t>(node.mesh);
    const CMeshView& view = m_scene.Meshes()[mesh];
    const CMeshPlacing placing = view.placing.value_or(CMeshPlacing{{}, view.matrix});
    if (view.matrix == CMat4{}) return placing.points.TransformPoint(m_prepared.meshes[mesh].bounds.Center());
    return placing.matrix.TransformPoint({});
}

CStatus CSceneEdits::Do(const CRotateEdit& edit) {
    const auto node = m_edited.FindNode(edit.node);
    if (!node) return NoNode(edit.node);
    if (!IsFinite(edit.anglesDeg))
        return CError{EErrorCode::BadArgument, lng::Mark("the angles are not numbers"), edit.node};
    const CMat4 turn = RotationOfAngles(edit.anglesDeg.x, edit.anglesDeg.y, edit.anglesDeg.z);
    const CPreparedNode& at = m_prepared.nodes[*node];
    if (at.isPlacedByMesh) {
        const CVec3 point = TurningPoint(at);
        return PlaceByMesh(*node, CMat4::Translation(point) * turn * CMat4::Translation(-point));
    }
    const CMat4 parent = WorldOf(m_prepared, at.parent, m_prepared.currentFrame);
    node_edits::RotateTracks(m_edited.ChangeTracks(*node), node_edits::RotationInParent(parent, turn));
    return CDone{};
}

// --- deleting --------------------------------------------------------------------------------------------

bool CSceneEdits::IsMorphTarget(const std::string& mesh, const Lib3dsNode* exceptOf) const {
    for (const CPreparedNode& node : m_prepared.nodes) {
        if (node.kind != ENodeKind::Object || node.source == nullptr || node.source == exceptOf) continue;
        for (const Lib3dsMorphKey* key = node.source->data.object.morph_track.keyL; key; key = key->next) {
            if (mesh == key->name) return true;
        }
    }
    return false;
}

/** A node's morph targets are deleted with it, unless other nodes show them or morph into them: left in the
 * file, each would become an object of its own. */
void CSceneEdits::DropMorphTargets(const Lib3dsNode& deleted) {
    for (std::size_t i = 0; i < m_prepared.meshes.size(); ++i) {
        const std::string name = m_prepared.meshes[i].name;
        const auto isNamed = [&](const Lib3dsMorphKey* key) {
            while (key != nullptr && name != key->name) key = key->next;
            return key != nullptr;
        };
        const auto shows = [i](const CPreparedNode& node) { return node.mesh == static_cast<int>(i); };
        if (!m_scene.Meshes()[i].isInFile || !isNamed(deleted.data.object.morph_track.keyL)) continue;
        if (std::any_of(m_prepared.nodes.begin(), m_prepared.nodes.end(), shows)) continue;
        if (!IsMorphTarget(name, &deleted)) m_edited.TakeMeshOut(i);
    }
}

/** The matrix of its mesh is what places such a node, and so its children. */
void CSceneEdits::LeaveEmptyMesh(std::size_t node) {
    const auto mesh = static_cast<std::size_t>(m_prepared.nodes[node].mesh);
    CPreparedMesh empty;
    empty.name = m_edited.NewMeshName(m_prepared.meshes[mesh].name);
    empty.toLocal = m_prepared.meshes[mesh].toLocal;
    CNewMesh made{CLib3dsMeshPtr(lib3ds_mesh_new(empty.name.c_str())), {}};
    if (!made.mesh) throw std::bad_alloc();
    made.view.mesh = made.mesh.get();
    made.view.matrix = m_scene.MatrixOf(mesh);
    made.view.isFilled = true;
    std::memcpy(made.mesh->matrix, made.view.matrix.m.data(), sizeof made.mesh->matrix);
    CopyName(m_edited.ChangeSource(node).name, empty.name);
    m_edited.AddMesh(std::move(made), std::move(empty));
    m_edited.ChangeNode(node).mesh = static_cast<int>(m_prepared.meshes.size()) - 1;
}

CStatus CSceneEdits::Do(const CDeleteEdit& edit) {
    const auto index = m_edited.FindNode(edit.node);
    if (!index) return NoNode(edit.node);
    const CPreparedNode node = m_prepared.nodes[*index];
    const auto mesh = static_cast<std::size_t>(node.mesh);
    const bool hasChildren =
        std::any_of(m_prepared.nodes.begin(), m_prepared.nodes.end(),
                    [&](const CPreparedNode& other) { return other.parent == static_cast<int>(*index); });
    const bool showsNothing = node.mesh < 0 || m_prepared.meshes[mesh].IndexCount() == 0;
    if (hasChildren && showsNothing)
        return CError{EErrorCode::BadArgument, lng::Mark("only its children would be left of it"), edit.node};
    if (hasChildren && node.isPlacedByMesh) {
        LeaveEmptyMesh(*index);
    } else if (hasChildren) {
        Lib3dsNode& source = m_edited.ChangeSource(*index);
        CopyName(source.data.object.instance, node.name);
        CopyName(source.name, "$$$DUMMY");
        CPreparedNode& changed = m_edited.ChangeNode(*index);
        changed.kind = ENodeKind::Dummy;
        changed.mesh = -1;
    } else {
        m_edited.RemoveNode(*index);
    }
    const bool isShown = std::any_of(m_prepared.nodes.begin(), m_prepared.nodes.end(),
                                     [&](const CPreparedNode& other) { return other.mesh == node.mesh; });
    if (node.mesh >= 0 && !isShown && !IsMorphTarget(m_prepared.meshes[mesh].name, nullptr))
        m_edited.TakeMeshOut(mesh);
    if (node.source != nullptr) DropMorphTargets(*node.source);
    return CDone{};
}
