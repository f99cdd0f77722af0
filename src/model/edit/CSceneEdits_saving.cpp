// SPDX-License-Identifier: MIT
#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/node.h>

#include <algorithm>

#include "model/edit/CSceneEdits.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/prepare_scene.h"
#include "model/prepare/resolve_placement.h"
#include "model/scene/mesh_access.h"

namespace {

bool IsKeyed(const CPreparedNode& node) {
    return node.mesh >= 0 && !node.isPlacedByMesh;
}

/** The transform as a reader of the file computes it from pivot and matrix. */
bool IsAsInFile(const CPreparedNode& node, const CPreparedMesh& mesh) {
    return node.meshToNode == CMat4::Translation(-node.pivot) * mesh.toLocal;
}

}  // namespace

void CSceneEdits::SettleForSaving() {
    Unsettle();
    if (!IsEdited()) return;
    const float frame = m_prepared.currentFrame;
    EvaluateNodes(m_prepared, m_scene, m_firstFrame);  // readers decide there
    SettlePlacedTwice();
    SettleMirroring();
    if (m_settled.meshes.empty()) SettleNotPlacedTwice();
    EvaluateNodes(m_prepared, m_scene, frame);
    auto look = m_prepared.materials.begin();
    for (Lib3dsMaterial* material = m_scene.Header()->materials; material;
         material = material->next, ++look) {
        if (!look->twoSided || material->two_sided) continue;
        material->two_sided = 1;
        m_settled.twoSided.push_back(material);
    }
}

void CSceneEdits::Settle(std::size_t mesh, const CMeshPlacing& placing) {
    m_scene.Place(mesh, placing);
    m_settled.meshes.push_back(mesh);
}

/** Whether a node turns a mirrored mesh over depends on the first node that shows the mesh, which may be
 * another one now. A mesh written without mirroring avoids the question. */
void CSceneEdits::SettleMirroring() {
    const std::vector<bool> turned = MeshesToTurn(m_prepared);
    for (std::size_t i = 0; i < turned.size(); ++i) {
        const CPreparedMesh& mesh = m_prepared.meshes[i];
        const CMeshView& view = m_scene.Meshes()[i];
        const CMat4 inFile = view.matrix.AffineInverse();
        const bool isTurned = mesh.toLocal != inFile;
        if (!mesh.matrixMirrors || !view.isInFile || view.placing || isTurned == turned[i]) continue;
        const auto isFixed = [&](const CPreparedNode& node) {
            return node.mesh == static_cast<int>(i) && node.isPlacedByMesh;
        };
        if (std::any_of(m_prepared.nodes.begin(), m_prepared.nodes.end(), isFixed)) continue;
        const CMat4 unmirrored = view.matrix * CMat4::Scale({-1, 1, 1});
        Settle(i, {isTurned ? CMat4{} : FlipOf(view.matrix), unmirrored});
    }
}

/** The points of such a scene were taken to stand where they belong. Matrices that say so lead every reader
 * to the same result. */
void CSceneEdits::SettlePlacedTwice() {
    for (const CPreparedNode& node : m_prepared.nodes) {
        if (!IsKeyed(node)) continue;
        const auto mesh = static_cast<std::size_t>(node.mesh);
        if (IsAsInFile(node, m_prepared.meshes[mesh]) || m_scene.Meshes()[mesh].placing) continue;
        bool invertible = false;
        const CMat4 matrix = (CMat4::Translation(node.pivot) * node.meshToNode).AffineInverse(&invertible);
        if (!invertible) continue;
        Settle(mesh, {{}, matrix});
    }
}

/** After an edit the remaining objects may look as if they were placed twice although they are not. One
 * matrix that is set, with a pivot that cancels it, tells the reader so. */
void CSceneEdits::SettleNotPlacedTwice() {
    if (!ArePlacedTwice(m_prepared)) return;
    const auto first = std::find_if(m_prepared.nodes.begin(), m_prepared.nodes.end(), IsKeyed);
    const CVec3 shift = first->pivot == CVec3{} ? CVec3{1, 0, 0} : first->pivot;
    for (const CPreparedNode& node : m_prepared.nodes) {
        if (node.mesh != first->mesh || node.source == nullptr) continue;
        auto& pivot = node.source->data.object.pivot;
        m_settled.pivots.push_back({node.source, {pivot[0], pivot[1], pivot[2]}});
        const CVec3 shifted = CVec3{pivot[0], pivot[1], pivot[2]} - shift;
        pivot[0] = shifted.x;
        pivot[1] = shifted.y;
        pivot[2] = shifted.z;
    }
    Settle(static_cast<std::size_t>(first->mesh), {{}, CMat4::Translation(shift)});
}

void CSceneEdits::Unsettle() {
    for (const std::size_t mesh : m_settled.meshes) m_scene.Place(mesh, std::nullopt);
    for (const auto& [node, before] : m_settled.pivots) {
        auto& pivot = node->data.object.pivot;
        pivot[0] = before.x;
        pivot[1] = before.y;
        pivot[2] = before.z;
    }
    for (Lib3dsMaterial* material : m_settled.twoSided) material->two_sided = 0;
    m_settled = {};
}
