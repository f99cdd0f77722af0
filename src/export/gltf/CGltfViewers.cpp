// SPDX-License-Identifier: MIT
#include "export/gltf/CGltfViewers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

#include "base/name_hash.h"
#include "export/gltf/CGltfNodes.h"
#include "export/gltf/glb/CGlbFile.h"
#include "export/gltf/glb/CJsonText.h"
#include "export/gltf/parts/gltf_values.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/prepare_scene.h"

namespace {

constexpr float kDegree = std::numbers::pi_v<float> / 180;

CVec3d InDouble(CVec3 v) {
    return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}

float Sound(float value, float without) {
    return std::isfinite(value) ? value : without;
}

/** Its colour times its strength; negative for one that takes light away. */
float BrightestOf(const CPreparedLight& light) {
    return std::max({light.color.x, light.color.y, light.color.z}) * light.multiplier;
}

}  // namespace

std::array<float, 4> CGltfViewer::TurnBetween(CVec3 position, CVec3 target, float rollDeg) {
    const CVec3d sight = InDouble(target) - InDouble(position);
    const CVec3d ahead = Length(sight) > 1e-12 && IsFinite(sight) ? Normalized(sight) : CVec3d{0, 1, 0};
    // As CViewCamera: straight up or down the picture's top points to -x.
    const CVec3d pole = ahead.x != 0 || ahead.y != 0 ? CVec3d{0, 0, 1} : CVec3d{-1, 0, 0};
    const CVec3d right = Normalized(Cross(ahead, pole));
    const CVec3d up = Normalized(Cross(right, ahead));
    const double roll = static_cast<double>(Sound(rollDeg, 0) * kDegree);
    const CVec3d top = up * std::cos(roll) - right * std::sin(roll);
    return TurnTo(Cross(ahead, top), top, ahead * -1);
}

CGltfViewers::CGltfViewers(const CPreparedScene& scene, CGltfNodes& nodes, CGlbFile& file)
    : m_scene(scene), m_nodes(nodes), m_file(file) {
    for (const CPreparedLight& light : scene.lights) {
        if (!light.off && IsFinite(light.position) && std::isfinite(BrightestOf(light))) AddLight(light);
    }
    for (const CPreparedCamera& camera : scene.cameras) {
        if (IsFinite(camera.position) && IsFinite(camera.target)) AddCamera(camera);
    }
    FindNodes();
    if (!m_standard.empty()) file.UseExtension("KHR_lights_punctual");
}

CGltfViewer& CGltfViewers::Add(const std::string& name, CVec3 position, CVec3 target, bool hasTarget) {
    CGltfViewer viewer;
    viewer.position = position;
    viewer.targetPosition = target;
    viewer.turns = hasTarget;
    CGltfNode node;
    node.name = name;
    node.transform.translation = position;
    viewer.node = m_nodes.Add(std::move(node), 0);
    if (hasTarget) {
        CGltfNode aim;
        aim.name = name + ".Target";
        aim.transform.translation = target;
        viewer.targetNode = m_nodes.Add(std::move(aim), 0);
    }
    m_all.push_back(viewer);
    return m_all.back();
}

void CGltfViewers::AddLight(const CPreparedLight& light) {
    const bool aims = light.spot && IsFinite(light.target);
    CGltfViewer& viewer = Add(light.name, light.position, light.target, aims);
    CGltfNode& node = m_nodes.At(viewer.node);
    if (aims) node.transform.rotation = CGltfViewer::TurnBetween(light.position, light.target, 0);
    m_lights.push_back(&light);
    if (!(BrightestOf(light) > 0)) return;
    node.light = static_cast<int>(m_standard.size());
    m_standard.push_back(&light);
}

void CGltfViewers::AddCamera(const CPreparedCamera& camera) {
    CGltfViewer& viewer = Add(camera.name, camera.position, camera.target, true);
    viewer.rollDeg = camera.rollDeg;
    CGltfNode& node = m_nodes.At(viewer.node);
    node.transform.rotation = CGltfViewer::TurnBetween(camera.position, camera.target, camera.rollDeg);
    node.camera = static_cast<int>(m_cameras.size());
    m_cameras.push_back(&camera);
}

/** By name, as EvaluateNodes finds what they hang on: of several nodes the last. */
void CGltfViewers::FindNodes() {
    std::array<CNameMap<int>, 4> found;  // cameras, their targets, lights, their targets
    for (std::size_t n = 0; n < m_scene.nodes.size(); ++n) {
        const CPreparedNode& node = m_scene.nodes[n];
        const auto kind = static_cast<std::size_t>(node.kind) - static_cast<std::size_t>(ENodeKind::Camera);
        const bool isViewer = node.kind >= ENodeKind::Camera && node.kind <= ENodeKind::SpotTarget;
        if (isViewer && node.source && !node.isPlacedByMesh && KeyCountsOf(node).position > 0)
            found[kind].insert_or_assign(node.name, static_cast<int>(n));
    }
    const auto nodeOf = [&](std::size_t kind, const std::string& name) {
        const auto place = found[kind].find(name);
        return place == found[kind].end() ? -1 : place->second;
    };
    for (std::size_t i = 0; i < m_all.size(); ++i) {
        const bool isLight = i < m_lights.size();
        const std::string& name = isLight ? m_lights[i]->name : m_cameras[i - m_lights.size()]->name;
        m_all[i].eye = nodeOf(isLight ? 2 : 0, name);
        if (m_all[i].turns) m_all[i].target = nodeOf(isLight ? 3 : 1, name);
    }
}

void CGltfViewers::WriteCamera(CJsonText& json, const CPreparedCamera& camera) const {
    // As CViewCamera: horizontal, of a picture of 4:3.
    const float fov = std::clamp(Sound(camera.fovDeg, 45), 0.1f, 175.0f);
    const float fovY = 2 * std::atan(std::tan(fov * kDegree / 2) * 3 / 4);
    const float radius = Sound(m_scene.boundingSphere.radius, 1);
    json.BeginObject().Member("type", "perspective").Key("perspective").BeginObject();
    json.Member("yfov", fovY).Member("znear", std::max(radius * 1e-3f, 1e-6f)).EndObject().EndObject();
}

/** The lights of the file do not fade. glTF's do with the square of the distance, so they are as bright as the file's in
 * the middle of the scene. */
void CGltfViewers::WriteLight(CJsonText& json, const CPreparedLight& light) const {
    const float brightest = BrightestOf(light);
    const CVec3 colour = light.color * (light.multiplier / brightest);
    const std::array<float, 3> linear{gltf_values::Linear(colour.x), gltf_values::Linear(colour.y),
                                      gltf_values::Linear(colour.z)};
    const float radius = std::max(Sound(m_scene.boundingSphere.radius, 1), 1e-6f);
    const float away =
        std::clamp(Length(light.position - m_scene.boundingSphere.center), radius * 0.1f, 1e18f);
    json.BeginObject().Member("type", light.spot ? "spot" : "point");
    json.Member("color", std::span<const float>(linear));
    json.Member("intensity", std::min(std::numbers::pi_v<float> * brightest * away * away, 3e38f));
    if (light.attenuate && light.outerRange > 0 && std::isfinite(light.outerRange))
        json.Member("range", light.outerRange);
    if (light.spot) {
        const float outer =
            std::clamp(Sound(light.falloffDeg, 46) / 2 * kDegree, 1e-3f, std::numbers::pi_v<float> / 2);
        const float inner = std::clamp(Sound(light.hotspotDeg, 45) / 2 * kDegree, 0.0f, outer * 0.999f);
        json.Key("spot").BeginObject().Member("innerConeAngle", inner).Member("outerConeAngle", outer);
        json.EndObject();
    }
    json.EndObject();
}

void CGltfViewers::Write(CJsonText& json) const {
    if (!m_cameras.empty()) {
        json.Key("cameras").BeginArray();
        for (const CPreparedCamera* camera : m_cameras) WriteCamera(json, *camera);
        json.EndArray();
    }
    if (m_standard.empty()) return;
    json.Key("extensions").BeginObject().Key("KHR_lights_punctual").BeginObject().Key("lights").BeginArray();
    for (const CPreparedLight* light : m_standard) WriteLight(json, *light);
    json.EndArray().EndObject().EndObject();
}

void CGltfViewers::WriteExtras(CJsonText& json) const {
    if (!m_lights.empty()) WriteExtraLights(json);
    if (m_cameras.empty()) return;
    json.Key("cameras").BeginArray();
    for (std::size_t i = 0; i < m_cameras.size(); ++i) {
        const CGltfViewer& viewer = m_all[m_lights.size() + i];
        json.BeginObject().Member("node", viewer.node).Member("target", viewer.targetNode);
        json.Member("name", CGltfNames::WellFormed(m_cameras[i]->name))
            .Member("rollDeg", m_cameras[i]->rollDeg);
        json.Member("fovDeg", m_cameras[i]->fovDeg).EndObject();
    }
    json.EndArray();
}

void CGltfViewers::WriteExtraLights(CJsonText& json) const {
    json.Key("lights").BeginArray();
    for (std::size_t i = 0; i < m_lights.size(); ++i) {
        const CPreparedLight& light = *m_lights[i];
        const std::array<float, 3> colour{light.color.x, light.color.y, light.color.z};
        json.BeginObject().Member("node", m_all[i].node).Member("spot", m_all[i].targetNode >= 0);
        json.Member("color", std::span<const float>(colour)).Member("multiplier", light.multiplier);
        if (m_all[i].targetNode >= 0) {
            json.Member("target", m_all[i].targetNode).Member("hotspotDeg", light.hotspotDeg);
            json.Member("falloffDeg", light.falloffDeg);
        }
        if (light.attenuate) {
            json.Member("attenuate", true).Member("inner", light.innerRange);
            json.Member("outer", light.outerRange);
        }
        json.EndObject();
    }
    json.EndArray();
}
