// SPDX-License-Identifier: MIT
#include <lib3ds/camera.h>
#include <lib3ds/file.h>
#include <lib3ds/light.h>
#include <lib3ds/node.h>
#include <lib3ds/quat.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>
#include <utility>

#include "base/name_hash.h"
#include "model/prepare/node_steps.h"
#include "model/prepare/prepare_scene.h"

namespace {
CVec3 ValueOf(const Lib3dsLin3Track& track, float frame, CVec3 without) {
    if (!track.keyL) return without;
    float value[3] = {};
    lib3ds_lin3_track_eval(const_cast<Lib3dsLin3Track*>(&track), value, frame);
    const CVec3 result{value[0], value[1], value[2]};
    return IsFinite(result) ? result : without;
}

float ValueOf(const Lib3dsLin1Track& track, float frame, float without) {
    if (!track.keyL) return without;
    float value = 0;
    lib3ds_lin1_track_eval(const_cast<Lib3dsLin1Track*>(&track), &value, frame);
    return std::isfinite(value) ? value : without;
}

using CTurn = std::array<float, 4>;

/** A unit quaternion; the identity for one without a length. */
CTurn UnitOf(const float (&q)[4]) {
    const float length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
    if (!(length > 1e-12f) || !std::isfinite(length)) return {0, 0, 0, 1};
    return {q[0] / length, q[1] / length, q[2] / length, q[3] / length};
}

CMat4 MatrixOf(const CTurn& turn) {
    const auto [x, y, z, w] = turn;
    CMat4 result;
    result.m = {1 - 2 * (y * y + z * z),
                2 * (x * y + w * z),
                2 * (x * z - w * y),
                0,
                2 * (x * y - w * z),
                1 - 2 * (x * x + z * z),
                2 * (y * z + w * x),
                0,
                2 * (x * z + w * y),
                2 * (y * z - w * x),
                1 - 2 * (x * x + y * y),
                0,
                0,
                0,
                0,
                1};
    return result;
}

/** The key before the frame when the frame lies between two keys whose turn is half a turn or
 * more, else null. */
const Lib3dsQuatKey* KeyBeforeLongTurn(const Lib3dsQuatTrack& track, float frame) {
    for (const Lib3dsQuatKey* key = track.keyL; key && key->next; key = key->next) {
        const bool between =
            frame >= static_cast<float>(key->tcb.frame) && frame < static_cast<float>(key->next->tcb.frame);
        if (between) return std::abs(key->next->angle) >= std::numbers::pi_v<float> ? key : nullptr;
    }
    return nullptr;
}

/** Frames past the end of a repeating track, put back into it. */
float WrappedFrame(const Lib3dsQuatTrack& track, float frame) {
    if (!(track.flags & LIB3DS_REPEAT) || !track.keyL || !track.keyL->next) return frame;
    const Lib3dsQuatKey* last = track.keyL;
    while (last->next) last = last->next;
    const auto first = static_cast<float>(track.keyL->tcb.frame), end = static_cast<float>(last->tcb.frame);
    return frame > end ? std::fmod(frame - first, end - first) + first : frame;
}

/** A quaternion between two keys takes the shorter way and forgets whole turns; a key's own axis
 * and angle do not. */
CTurn TurnOf(const Lib3dsQuatTrack& track, float frame) {
    if (!track.keyL) return {0, 0, 0, 1};
    frame = WrappedFrame(track, frame);
    if (const Lib3dsQuatKey* key = KeyBeforeLongTurn(track, frame)) {
        const auto begin = static_cast<float>(key->tcb.frame), end = static_cast<float>(key->next->tcb.frame);
        const float share = (frame - begin) / (end - begin);
        const float* axis = key->next->axis;
        float turn[4], q[4], axisCopy[3] = {axis[0], axis[1], axis[2]};
        lib3ds_quat_axis_angle(turn, axisCopy, key->next->angle * share);
        lib3ds_quat_mul(q, turn, const_cast<float*>(key->q));
        return UnitOf(q);
    }
    float q[4] = {0, 0, 0, 1};
    lib3ds_quat_track_eval(const_cast<Lib3dsQuatTrack*>(&track), q, frame);
    return UnitOf(q);
}

const Lib3dsLin3Track* PositionTrack(const Lib3dsNode& node) {
    switch (node.type) {
        case LIB3DS_OBJECT_NODE:
            return &node.data.object.pos_track;
        case LIB3DS_CAMERA_NODE:
            return &node.data.camera.pos_track;
        case LIB3DS_TARGET_NODE:
            return &node.data.target.pos_track;
        case LIB3DS_LIGHT_NODE:
            return &node.data.light.pos_track;
        case LIB3DS_SPOT_NODE:
            return &node.data.spot.pos_track;
        default:
            return nullptr;
    }
}

CMat4 LocalMatrix(const Lib3dsNode& node, float frame) {
    const Lib3dsLin3Track* track = PositionTrack(node);
    CMat4 matrix = track ? CMat4::Translation(ValueOf(*track, frame, {})) : CMat4{};
    if (node.type == LIB3DS_OBJECT_NODE) {
        const Lib3dsObjectData& data = node.data.object;
        matrix = matrix * MatrixOf(TurnOf(data.rot_track, frame)) *
                 CMat4::Scale(ValueOf(data.scl_track, frame, {1, 1, 1}));
    }
    return matrix;
}

/** Hide tracks switch at each of their keys, beginning with shown. */
bool IsShown(const Lib3dsNode& node, float frame) {
    if (node.type != LIB3DS_OBJECT_NODE) return true;
    bool shown = true;
    for (const Lib3dsBoolKey* key = node.data.object.hide_track.keyL; key; key = key->next) {
        if (static_cast<float>(key->tcb.frame) > frame) break;
        shown = !shown;
    }
    return shown;
}

void EvaluateTransforms(CPreparedScene& prepared, float frame) {
    for (CPreparedNode& node : prepared.nodes) {
        if (node.isPlacedByMesh) {
            node.world = node.fixedWorld;
        } else {
            node.world = LocalMatrix(*node.source, frame);
            if (node.parent >= 0)
                node.world = prepared.nodes[static_cast<std::size_t>(node.parent)].world * node.world;
        }
        if (!node.world.IsFinite()) node.world = {};
        const CMat4 before = std::exchange(node.meshToWorld, node.world * node.meshToNode);
        if (!(node.meshToWorld == before)) node.boundsStamp = 0;
        node.mirrored = node.meshToWorld.Determinant3() < 0;
    }
}

/** Cameras and lights that have nodes stand where these are; a target node of the same name is
 * what they look at. */
void EvaluateViewers(CPreparedScene& prepared, float frame) {
    CNameMap<CPreparedLight*> lights;
    CNameMap<CPreparedCamera*> cameras;
    for (CPreparedLight& light : prepared.lights) lights.emplace(light.name, &light);
    for (CPreparedCamera& camera : prepared.cameras) cameras.emplace(camera.name, &camera);
    for (const CPreparedNode& node : prepared.nodes) {
        if (!node.source || node.isPlacedByMesh) continue;
        const CVec3 place = node.world.TransformPoint({});
        const auto light = lights.find(node.name);
        const auto camera = cameras.find(node.name);
        if (node.kind == ENodeKind::Light && light != lights.end()) {
            const Lib3dsLightData& data = node.source->data.light;
            if (data.pos_track.keyL) light->second->position = place;
            light->second->color = ValueOf(data.col_track, frame, light->second->color);
            light->second->hotspotDeg = ValueOf(data.hotspot_track, frame, light->second->hotspotDeg);
            light->second->falloffDeg = std::max(
                ValueOf(data.falloff_track, frame, light->second->falloffDeg), light->second->hotspotDeg);
        } else if (node.kind == ENodeKind::SpotTarget && light != lights.end() &&
                   node.source->data.spot.pos_track.keyL) {
            light->second->target = place;
        } else if (node.kind == ENodeKind::Camera && camera != cameras.end()) {
            const Lib3dsCameraData& data = node.source->data.camera;
            if (data.pos_track.keyL) camera->second->position = place;
            const float fov = ValueOf(data.fov_track, frame, camera->second->fovDeg);
            camera->second->fovDeg = std::clamp(fov > 0 ? fov : 45.0f, 0.5f, 175.0f);
            camera->second->rollDeg = ValueOf(data.roll_track, frame, camera->second->rollDeg);
        } else if (node.kind == ENodeKind::CameraTarget && camera != cameras.end() &&
                   node.source->data.target.pos_track.keyL) {
            camera->second->target = place;
        } else if (node.kind == ENodeKind::Ambient) {
            prepared.ambientLight =
                ValueOf(node.source->data.ambient.col_track, frame, prepared.ambientLight);
        }
    }
    for (CPreparedCamera& camera : prepared.cameras) {
        if (Length(camera.target - camera.position) < 1e-12f)
            camera.target = camera.position + CVec3{0, 1, 0};
    }
}

template <class T>
std::size_t CountKeys(const T* key) {
    std::size_t count = 0;
    for (; key; key = key->next) ++count;
    return count;
}

}  // namespace

CNodePose PoseOf(const CPreparedNode& node, float frame) {
    CNodePose pose;
    if (!node.source) return pose;
    if (const Lib3dsLin3Track* track = PositionTrack(*node.source))
        pose.position = ValueOf(*track, frame, {});
    if (node.kind == ENodeKind::Camera) pose.rollDeg = ValueOf(node.source->data.camera.roll_track, frame, 0);
    if (node.source->type != LIB3DS_OBJECT_NODE) return pose;
    pose.turn = TurnOf(node.source->data.object.rot_track, frame);
    pose.scale = ValueOf(node.source->data.object.scl_track, frame, {1, 1, 1});
    return pose;
}

CKeyCounts KeyCountsOf(const CPreparedNode& node) {
    CKeyCounts counts;
    if (!node.source) return counts;
    if (const Lib3dsLin3Track* track = PositionTrack(*node.source)) counts.position = CountKeys(track->keyL);
    if (node.kind == ENodeKind::Camera) counts.turn = CountKeys(node.source->data.camera.roll_track.keyL);
    if (node.source->type != LIB3DS_OBJECT_NODE) return counts;
    counts.turn = CountKeys(node.source->data.object.rot_track.keyL);
    counts.scale = CountKeys(node.source->data.object.scl_track.keyL);
    return counts;
}

std::vector<float> HideFrames(const CPreparedNode& node) {
    std::vector<float> frames;
    if (!node.source || node.source->type != LIB3DS_OBJECT_NODE) return frames;
    const Lib3dsBoolKey* key = node.source->data.object.hide_track.keyL;
    for (; key; key = key->next) frames.push_back(static_cast<float>(key->tcb.frame));
    return frames;
}

CMat4 WorldOf(const CPreparedScene& prepared, int node, float frame) {
    CMat4 world;
    while (node >= 0) {
        const CPreparedNode& at = prepared.nodes[static_cast<std::size_t>(node)];
        world = (at.isPlacedByMesh ? at.fixedWorld : LocalMatrix(*at.source, frame)) * world;
        node = at.isPlacedByMesh ? -1 : at.parent;
    }
    return world.IsFinite() ? world : CMat4{};
}

void EvaluateNodes(CPreparedScene& prepared, const CScene& scene, float frame, unsigned threads) {
    prepared.currentFrame = frame;
    EvaluateTransforms(prepared, frame);
    EvaluateViewers(prepared, frame);
    for (CPreparedNode& node : prepared.nodes) {
        if (node.mesh >= 0) node.visible = !node.isLeftOut && (!node.source || IsShown(*node.source, frame));
    }
    EvaluateMorphs(prepared, scene, frame, threads);
    EvaluateBounds(prepared, threads);
}
