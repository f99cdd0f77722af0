// SPDX-License-Identifier: MIT
#include "export/gltf/CGltfNodes.h"

#include <utility>

#include "export/gltf/CGltfMeshes.h"
#include "export/gltf/glb/CJsonText.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/prepare_scene.h"

namespace {

/** Hidden at first when an odd number of switches comes before. */
bool IsShownSometime(const std::vector<float>& switches, float first, float last) {
    bool shown = true;
    for (const float frame : switches) {
        if (frame > first && shown) return true;
        if (frame > last) return shown;
        shown = !shown;
    }
    return shown;
}

bool IsIdentity(const std::vector<CGltfTransform>& chain) {
    return chain.size() == 1 && chain[0].IsIdentity();
}

}  // namespace

std::vector<bool> ShownNodes(const CPreparedScene& scene) {
    std::vector<bool> shown(scene.nodes.size());
    for (std::size_t n = 0; n < shown.size(); ++n) {
        const CPreparedNode& node = scene.nodes[n];
        if (node.mesh < 0 || node.isLeftOut || !node.meshToWorld.IsFinite()) continue;
        shown[n] = node.visible ||
                   (scene.animated && IsShownSometime(HideFrames(node), scene.firstFrame, scene.lastFrame));
    }
    return shown;
}

CGltfNodes::CGltfNodes() {
    CGltfNode root;
    root.name = "Scene";
    constexpr float kHalfRoot = 0.70710678f;
    root.transform.rotation = {-kHalfRoot, 0, 0, kHalfRoot};
    m_nodes.push_back(std::move(root));
}

int CGltfNodes::Add(CGltfNode node, int parent) {
    const int number = static_cast<int>(m_nodes.size());
    node.name = m_names.Take(node.name);
    m_nodes.push_back(std::move(node));
    At(parent).children.push_back(number);
    return number;
}

int CGltfNodes::AddChain(const CMatrix4d& matrix, int parent, std::string name, bool mayBeNone) {
    const std::vector<CGltfTransform> chain = TransformsOf(matrix);
    if (mayBeNone && IsIdentity(chain)) return parent;
    for (const CGltfTransform& transform : chain) {
        CGltfNode node;
        node.name = std::exchange(name, {});
        if (transform.IsFinite()) node.transform = transform;
        parent = Add(std::move(node), parent);
    }
    return parent;
}

void CGltfNodes::AddMesh(const CPreparedScene& scene, const CGltfMeshes& meshes, std::size_t n, int parent) {
    const CPreparedNode& node = scene.nodes[n];
    const auto mesh = static_cast<std::size_t>(node.mesh);
    if (meshes.NumberOf(mesh) < 0) return;
    const CVec3 offset = meshes.OffsetOf(mesh);
    const auto scale = static_cast<double>(meshes.ScaleOf(mesh));
    const CMatrix4d back =
        CMatrix4d::Translation(
            {static_cast<double>(offset.x), static_cast<double>(offset.y), static_cast<double>(offset.z)}) *
        CMatrix4d::Scale({scale, scale, scale});
    const bool hides = !HideFrames(node).empty();
    const int first = static_cast<int>(m_nodes.size());
    const int holder = AddChain(CMatrix4d::From(node.meshToNode) * back, parent, {}, !hides);
    At(holder).mesh = meshes.NumberOf(mesh);
    At(holder).weights = meshes.WeightsOf(mesh, node.morph.shape);
    m_holders[n].mesh = holder;
    if (!hides) return;
    m_holders[n].hiding = first;
    m_holders[n].scale = At(first).transform.scale;
    if (!node.visible) At(first).transform.scale = {};
}

void CGltfNodes::AddPosed(const CPreparedScene& scene, std::size_t n) {
    const CPreparedNode& node = scene.nodes[n];
    const CNodePose pose = PoseOf(node, scene.currentFrame);
    CGltfNode posed;
    posed.name = node.name;
    posed.transform = {pose.position, pose.turn, pose.scale};
    const auto parent = static_cast<std::size_t>(node.parent);
    const CMat4 before = node.parent < 0 ? CMat4{} : scene.nodes[parent].world;
    // What leaves the range of a float is not moved at all.
    const bool fits = CMat4::From(CMatrix4d::From(before) * posed.transform.Matrix()).IsFinite();
    if (!fits) posed.transform = {};
    m_inner[n] = Add(std::move(posed), fits && node.parent >= 0 ? m_inner[parent] : 0);
    if (fits) m_posed[n] = m_inner[n];
}

void CGltfNodes::AddObject(const CPreparedScene& scene, const CGltfMeshes& meshes, std::size_t n,
                           bool showsMesh) {
    const CPreparedNode& node = scene.nodes[n];
    if (node.isPlacedByMesh) {
        m_inner[n] = AddChain(CMatrix4d::From(node.fixedWorld), 0, node.name, false);
    } else {
        AddPosed(scene, n);
    }
    if (showsMesh) AddMesh(scene, meshes, n, m_inner[n]);
}

void CGltfNodes::AddObjects(const CPreparedScene& scene, const CGltfMeshes& meshes,
                            const std::vector<bool>& shown) {
    const std::size_t count = scene.nodes.size();
    m_inner.assign(count, -1);
    m_posed.assign(count, -1);
    m_holders.assign(count, {});
    std::vector<bool> shows(count), needed(count);
    for (std::size_t n = count; n-- > 0;) {
        const CPreparedNode& node = scene.nodes[n];
        shows[n] = shown[n] && meshes.NumberOf(static_cast<std::size_t>(node.mesh)) >= 0;
        needed[n] = needed[n] || shows[n];
        if (needed[n] && node.parent >= 0 && !node.isPlacedByMesh)
            needed[static_cast<std::size_t>(node.parent)] = true;
    }
    for (std::size_t n = 0; n < count; ++n) {
        if (needed[n]) AddObject(scene, meshes, n, shows[n]);
    }
}

void CGltfNodes::Write(CJsonText& json) const {
    json.Key("nodes").BeginArray();
    for (const CGltfNode& node : m_nodes) {
        json.BeginObject();
        if (!node.name.empty()) json.Member("name", node.name);
        node.transform.Write(json);
        if (node.mesh >= 0) json.Member("mesh", node.mesh);
        if (node.camera >= 0) json.Member("camera", node.camera);
        if (!node.weights.empty()) json.Member("weights", std::span<const float>(node.weights));
        if (node.light >= 0) {
            json.Key("extensions").BeginObject().Key("KHR_lights_punctual").BeginObject();
            json.Member("light", node.light).EndObject().EndObject();
        }
        if (!node.children.empty()) {
            json.Key("children").BeginArray();
            for (const int child : node.children) json.Value(child);
            json.EndArray();
        }
        json.EndObject();
    }
    json.EndArray();
}
