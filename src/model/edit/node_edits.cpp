// SPDX-License-Identifier: MIT
#include "model/edit/node_edits.h"

#include <lib3ds/node.h>
#include <lib3ds/quat.h>
#include <lib3ds/tracks.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "base/math/CBox.h"

namespace node_edits {
namespace {

/** x, y, z, w of a unit quaternion, counter-clockwise. */
using CQuat = std::array<double, 4>;

CQuat Product(const CQuat& a, const CQuat& b) {  // b first
    return {a[3] * b[0] + a[0] * b[3] + a[1] * b[2] - a[2] * b[1],
            a[3] * b[1] - a[0] * b[2] + a[1] * b[3] + a[2] * b[0],
            a[3] * b[2] + a[0] * b[1] - a[1] * b[0] + a[2] * b[3],
            a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2]};
}

CQuat OfAxisAngle(CVec3 axis, double angle) {
    const CVec3 unit = Normalized(axis);
    const double s = std::sin(angle / 2);
    return {static_cast<double>(unit.x) * s, static_cast<double>(unit.y) * s, static_cast<double>(unit.z) * s,
            Length(unit) > 0 ? std::cos(angle / 2) : 1.0};
}

CQuat OfRotation(const CMat4& r) {
    const auto at = [&](int row, int column) {
        return static_cast<double>(r.m[static_cast<std::size_t>(column) * 4 + static_cast<std::size_t>(row)]);
    };
    // The largest component first, so that nothing is divided by a small number.
    const double trace = at(0, 0) + at(1, 1) + at(2, 2);
    CQuat q{};
    if (trace > 0) {
        const double s = 2 * std::sqrt(1 + trace);
        q = {(at(2, 1) - at(1, 2)) / s, (at(0, 2) - at(2, 0)) / s, (at(1, 0) - at(0, 1)) / s, s / 4};
    } else {
        const int i = at(0, 0) > at(1, 1) ? (at(0, 0) > at(2, 2) ? 0 : 2) : (at(1, 1) > at(2, 2) ? 1 : 2);
        const int j = (i + 1) % 3, k = (i + 2) % 3;
        const double s = 2 * std::sqrt(std::max(1e-12, 1 + at(i, i) - at(j, j) - at(k, k)));
        q[static_cast<std::size_t>(i)] = s / 4;
        q[static_cast<std::size_t>(j)] = (at(j, i) + at(i, j)) / s;
        q[static_cast<std::size_t>(k)] = (at(k, i) + at(i, k)) / s;
        q[3] = (at(k, j) - at(j, k)) / s;
    }
    return q;
}

/** Keys turn clockwise about their axes. */
void StoreInKey(Lib3dsQuatKey& key, const CQuat& q) {
    const double s = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2]);
    const bool turns = s > 1e-9;
    key.axis[0] = turns ? static_cast<float>(q[0] / s) : 0.0f;
    key.axis[1] = turns ? static_cast<float>(q[1] / s) : 0.0f;
    key.axis[2] = turns ? static_cast<float>(q[2] / s) : 1.0f;
    key.angle = static_cast<float>(-2 * std::atan2(s, q[3]));
}

CVec3 VectorOf(const float (&v)[3]) {
    return {v[0], v[1], v[2]};
}

void Store(float (&to)[3], CVec3 v) {
    to[0] = v.x;
    to[1] = v.y;
    to[2] = v.z;
}

/** The keys of a track one after the other. */
template <class TKey>
std::vector<std::byte> BytesOf(const TKey* key) {
    std::vector<std::byte> bytes;
    for (; key != nullptr; key = key->next) {
        bytes.resize(bytes.size() + sizeof(TKey));
        std::memcpy(bytes.data() + bytes.size() - sizeof(TKey), key, sizeof(TKey));
    }
    return bytes;
}

/** Into the keys that they come from. */
template <class TKey>
void PutBytes(const std::vector<std::byte>& bytes, TKey*& first) {
    if (bytes.empty()) {
        first = nullptr;
        return;
    }
    TKey* key = first;
    for (std::size_t at = 0; at < bytes.size(); at += sizeof(TKey)) {
        std::memcpy(key, bytes.data() + at, sizeof(TKey));
        key = key->next;
    }
}

}  // namespace

void MoveTracks(Lib3dsNode& node, CVec3 offset) {
    Lib3dsObjectData& data = node.data.object;
    if (data.pos_track.keyL == nullptr) {
        Lib3dsLin3Key* key = lib3ds_lin3_key_new();
        if (key == nullptr) return;
        lib3ds_lin3_track_insert(&data.pos_track, key);
    }
    for (Lib3dsLin3Key* key = data.pos_track.keyL; key != nullptr; key = key->next) {
        Store(key->value, VectorOf(key->value) + offset);
    }
    lib3ds_lin3_track_setup(&data.pos_track);
    Store(data.pos, VectorOf(data.pos) + offset);
}

void RotateTracks(Lib3dsNode& node, const CMat4& rotation) {
    Lib3dsObjectData& data = node.data.object;
    if (data.rot_track.keyL == nullptr) {
        Lib3dsQuatKey* key = lib3ds_quat_key_new();
        if (key == nullptr) return;
        key->axis[2] = 1;
        lib3ds_quat_track_insert(&data.rot_track, key);
    }
    // A key adds its turn to those before it, in the parent's coordinates: the first one takes the new turn,
    // the others keep their angles (and whole turns) about axes that are turned along.
    Lib3dsQuatKey* first = data.rot_track.keyL;
    const CQuat before = OfAxisAngle(VectorOf(first->axis), -static_cast<double>(first->angle));
    StoreInKey(*first, Product(OfRotation(rotation), before));
    for (Lib3dsQuatKey* key = first->next; key != nullptr; key = key->next) {
        Store(key->axis, rotation.TransformDirection(VectorOf(key->axis)));
    }
    lib3ds_quat_track_setup(&data.rot_track);
}

CMat4 RotationInParent(const CMat4& parentWorld, const CMat4& rotation) {
    const CVec3 x = Normalized({parentWorld.m[0], parentWorld.m[1], parentWorld.m[2]});
    const CVec3 rawY{parentWorld.m[4], parentWorld.m[5], parentWorld.m[6]};
    const CVec3 y = Normalized(rawY - x * Dot(rawY, x));
    if (Length(x) < 0.5f || Length(y) < 0.5f) return rotation;  // flattened: it has no directions
    const CVec3 z = Cross(x, y) * (parentWorld.Determinant3() < 0 ? -1.0f : 1.0f);
    CMat4 axes, back;
    axes.m = {x.x, x.y, x.z, 0, y.x, y.y, y.z, 0, z.x, z.y, z.z, 0, 0, 0, 0, 1};
    back.m = {x.x, y.x, z.x, 0, x.y, y.y, z.y, 0, x.z, y.z, z.z, 0, 0, 0, 0, 1};
    return back * rotation * axes;
}

CTracksBefore::CTracksBefore(const Lib3dsNode& node)
    : m_positionKeys(BytesOf(node.data.object.pos_track.keyL)),
      m_rotationKeys(BytesOf(node.data.object.rot_track.keyL)) {
    std::copy_n(node.data.object.pos, 3, m_position.begin());
}

void CTracksBefore::PutBack(Lib3dsNode& node) const {
    Lib3dsObjectData& data = node.data.object;
    std::copy(m_position.begin(), m_position.end(), data.pos);
    if (m_positionKeys.empty()) lib3ds_lin3_track_free_keys(&data.pos_track);
    if (m_rotationKeys.empty()) lib3ds_quat_track_free_keys(&data.rot_track);
    PutBytes(m_positionKeys, data.pos_track.keyL);
    PutBytes(m_rotationKeys, data.rot_track.keyL);
}

}  // namespace node_edits
