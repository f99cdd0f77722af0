// SPDX-License-Identifier: MIT
#include "model/prepare/resolve_placement.h"
#include "base/text/lng.h"

#include <lib3ds/node.h>

#include <algorithm>

namespace {
/** The node whose keys say how a mesh stands: the first that is no instance, else the first. */
std::vector<const CPreparedNode*> ReferenceNodes(const CPreparedScene& prepared) {
    std::vector<const CPreparedNode*> reference(prepared.meshes.size(), nullptr);
    for (const CPreparedNode& node : prepared.nodes) {
        if (node.mesh < 0 || node.isPlacedByMesh) continue;
        const CPreparedNode*& known = reference[static_cast<std::size_t>(node.mesh)];
        const auto isInstance = [](const CPreparedNode& n) { return n.source->data.object.instance[0] != 0; };
        if (!known || (isInstance(*known) && !isInstance(node))) known = &node;
    }
    return reference;
}
}  // namespace

std::vector<bool> MeshesToTurn(const CPreparedScene& prepared) {
    const std::vector<const CPreparedNode*> reference = ReferenceNodes(prepared);
    std::vector<bool> turned(prepared.meshes.size());
    for (std::size_t i = 0; i < turned.size(); ++i) {
        turned[i] =
            prepared.meshes[i].matrixMirrors && reference[i] && reference[i]->world.Determinant3() > 0;
    }
    return turned;
}

bool ResolveMirroring(CPreparedScene& prepared) {
    const CMat4 mirror = CMat4::Scale({-1, 1, 1});
    const std::vector<bool> turned = MeshesToTurn(prepared);
    bool any = false;
    for (std::size_t i = 0; i < turned.size(); ++i) {
        if (!turned[i]) continue;
        prepared.meshes[i].toLocal = mirror * prepared.meshes[i].toLocal;
        any = true;
    }
    for (CPreparedNode& node : prepared.nodes) {
        if (node.mesh < 0 || !turned[static_cast<std::size_t>(node.mesh)]) continue;
        node.meshToNode =
            CMat4::Translation(-node.pivot) * prepared.meshes[static_cast<std::size_t>(node.mesh)].toLocal;
        if (node.isPlacedByMesh) node.fixedWorld = node.fixedWorld * mirror;
    }
    return any;
}

namespace {
float DistanceTo(const CBox& box, CVec3 p) {
    const auto outside = [](float low, float high, float v) {
        return v < low ? low - v : v > high ? v - high : 0.0f;
    };
    return Length({outside(box.min.x, box.max.x, p.x), outside(box.min.y, box.max.y, p.y),
                   outside(box.min.z, box.max.z, p.z)});
}

bool IsKeyed(const CPreparedNode& node) {
    return node.mesh >= 0 && !node.isPlacedByMesh;
}

/** True when the node moves the mesh by more than a hundredth of its size. */
bool MovesMesh(const CPreparedNode& node, const CBox& bounds) {
    const float tolerance = 0.01f * Length(bounds.max - bounds.min);
    for (unsigned i = 0; i < 8; ++i) {
        if (Length(node.meshToWorld.TransformPoint(bounds.Corner(i)) - bounds.Corner(i)) > tolerance)
            return true;
    }
    return false;
}

bool IsPlacedTwice(const CPreparedNode& node, const CPreparedMesh& mesh) {
    if (!(mesh.toLocal == CMat4{}) || mesh.bounds.IsEmpty() || !MovesMesh(node, mesh.bounds)) return false;
    return DistanceTo(mesh.bounds, node.world.TransformPoint({})) < DistanceTo(mesh.bounds, node.pivot);
}
}  // namespace

bool ArePlacedTwice(const CPreparedScene& prepared) {
    std::size_t keyed = 0;
    for (const CPreparedNode& node : prepared.nodes) {
        if (!IsKeyed(node)) continue;
        if (!IsPlacedTwice(node, prepared.meshes[static_cast<std::size_t>(node.mesh)])) return false;
        ++keyed;
    }
    return keyed >= 2;  // one object alone stands well anywhere
}

bool ResolvePlacedTwice(CPreparedScene& prepared) {
    if (!ArePlacedTwice(prepared)) return false;
    for (CPreparedNode& node : prepared.nodes) {
        if (IsKeyed(node)) node.meshToNode = node.world.AffineInverse();
    }
    prepared.notes.push_back({CSceneNote::EKind::Repaired,
                              lng::Mark("The objects were moved twice, by their points and by their keys")});
    return true;
}
