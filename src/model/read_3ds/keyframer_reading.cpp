// SPDX-License-Identifier: MIT
#include "model/read_3ds/keyframer_reading.h"

#include <lib3ds/chunk.h>
#include <lib3ds/file.h>
#include <lib3ds/node.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

#include "model/scene/lib3ds_list.h"
#include "model/scene/lib3ds_name.h"
#include "model/scene/scene_budget.h"

namespace {
constexpr int kMaxFrame = 1'000'000;
constexpr float kMaxCoordinate = 1e15f;  // its square still fits a float

/** A number of a key; what is not usable is replaced. */
float Usable(float value, float replacement, CNoteList& notes) {
    if (std::isfinite(value) && std::abs(value) < kMaxCoordinate) return value;
    notes.Repaired("A key's number that is not finite was replaced");
    return replacement;
}

float SplineTerm(CByteCursor& in, float lowest) {
    const float value = in.Read<float>();
    return std::isfinite(value) ? std::clamp(value, lowest, 1.0f) : 0.0f;
}

/** Frame, flags and the spline terms that the flags announce. */
void ReadTcb(CByteCursor& in, Lib3dsTcb& tcb) {
    tcb.frame = std::clamp(in.Read<std::int32_t>(), -kMaxFrame, kMaxFrame);
    tcb.flags = static_cast<Lib3dsWord>(in.Read<std::uint16_t>() & 0x1Fu);
    if (tcb.flags & LIB3DS_USE_TENSION) tcb.tens = SplineTerm(in, -1);
    if (tcb.flags & LIB3DS_USE_CONTINUITY) tcb.cont = SplineTerm(in, -1);
    if (tcb.flags & LIB3DS_USE_BIAS) tcb.bias = SplineTerm(in, -1);
    if (tcb.flags & LIB3DS_USE_EASE_TO) tcb.ease_to = SplineTerm(in, 0);
    if (tcb.flags & LIB3DS_USE_EASE_FROM) tcb.ease_from = SplineTerm(in, 0);
}

void ReadValue(CByteCursor& in, Lib3dsLin1Key& key, float replacement, CNoteList& notes) {
    key.value = Usable(in.Read<float>(), replacement, notes);
}
void ReadValue(CByteCursor& in, Lib3dsLin3Key& key, float replacement, CNoteList& notes) {
    for (float& value : key.value) value = Usable(in.Read<float>(), replacement, notes);
}
void ReadValue(CByteCursor& in, Lib3dsQuatKey& key, float replacement, CNoteList& notes) {
    key.angle = Usable(in.Read<float>(), replacement, notes);
    for (float& value : key.axis) value = Usable(in.Read<float>(), replacement, notes);
}
void ReadValue(CByteCursor&, Lib3dsBoolKey&, float, CNoteList&) {}
void ReadValue(CByteCursor& in, Lib3dsMorphKey& key, float, CNoteList&) {
    CopyName(key.name, in.ReadString());
}

/** What lib3ds offers for one kind of track; its functions differ in name alone. */
template <auto NewKey, auto FreeKey, auto... SetUpFunction>
struct CTrackFunctions {
    using Key = std::remove_pointer_t<decltype(NewKey())>;
    static constexpr auto kNewKey = NewKey;
    static constexpr auto kFreeKey = FreeKey;
    static void SetUp(auto& track) { (SetUpFunction(&track), ...); }
};
template <class Track>
struct CTrackKind;
template <>
struct CTrackKind<Lib3dsLin1Track>
    : CTrackFunctions<lib3ds_lin1_key_new, lib3ds_lin1_key_free, lib3ds_lin1_track_setup> {};
template <>
struct CTrackKind<Lib3dsLin3Track>
    : CTrackFunctions<lib3ds_lin3_key_new, lib3ds_lin3_key_free, lib3ds_lin3_track_setup> {};
template <>
struct CTrackKind<Lib3dsQuatTrack>
    : CTrackFunctions<lib3ds_quat_key_new, lib3ds_quat_key_free, lib3ds_quat_track_setup> {};
template <>
struct CTrackKind<Lib3dsBoolTrack> : CTrackFunctions<lib3ds_bool_key_new, lib3ds_bool_key_free> {};
template <>
struct CTrackKind<Lib3dsMorphTrack> : CTrackFunctions<lib3ds_morph_key_new, lib3ds_morph_key_free> {};

/** In frame order, the last of several keys on one frame. Unused keys are freed. */
template <class Track>
void LinkKeys(Track& track, std::vector<typename CTrackKind<Track>::Key*>& keys, CNoteList& notes) {
    const auto byFrame = [](const auto* a, const auto* b) { return a->tcb.frame < b->tcb.frame; };
    if (!std::is_sorted(keys.begin(), keys.end(), byFrame)) {
        notes.Repaired("Keys that were out of order were sorted");
        std::stable_sort(keys.begin(), keys.end(), byFrame);
    }
    auto** link = &track.keyL;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (i + 1 < keys.size() && keys[i + 1]->tcb.frame == keys[i]->tcb.frame) {
            CTrackKind<Track>::kFreeKey(keys[i]);
            notes.Repaired("Of several keys on one frame the last was kept");
            continue;
        }
        *link = keys[i];
        link = &keys[i]->next;
    }
    *link = nullptr;
}

/** Where notes of keys go, and how many keys the scene may still have. */
struct CKeyNotes {
    CNoteList& notes;
    std::size_t& keysLeft;
};

template <class Track>
std::vector<typename CTrackKind<Track>::Key*> ReadKeys(CByteCursor& in, std::uint32_t claimed,
                                                       float replacement, CKeyNotes& to) {
    std::vector<typename CTrackKind<Track>::Key*> keys;
    for (std::uint32_t i = 0; i < claimed && in.Left() > 0; ++i) {
        if (to.keysLeft == 0) {
            to.notes.Limited("There are more than 2,000,000 keys; the rest is not used");
            return keys;
        }
        auto* key = CTrackKind<Track>::kNewKey();
        if (!key) break;
        ReadTcb(in, key->tcb);
        ReadValue(in, *key, replacement, to.notes);
        if (in.RanOut()) {
            CTrackKind<Track>::kFreeKey(key);
            break;
        }
        keys.push_back(key);
        --to.keysLeft;
    }
    if (keys.size() < claimed) to.notes.Repaired("A list of keys is shorter than it says");
    return keys;
}

template <class Track>
void ReadTrack(CByteCursor in, Track& track, float replacement, CKeyNotes& to) {
    if (track.keyL) return;  // a second track of the same kind
    track.flags = in.Read<std::uint16_t>();
    in.Skip(8);
    const std::uint32_t claimed = in.Read<std::uint32_t>();
    std::vector<typename CTrackKind<Track>::Key*> keys = ReadKeys<Track>(in, claimed, replacement, to);
    LinkKeys(track, keys, to.notes);
    // A loop over a single key has no length: lib3ds would divide by it.
    if (!track.keyL || !track.keyL->next)
        track.flags &= ~static_cast<Lib3dsDword>(LIB3DS_REPEAT | LIB3DS_SMOOTH);
    CTrackKind<Track>::SetUp(track);
}

void ReadVector(CByteCursor& in, float (&target)[3], CKeyNotes& to) {
    for (float& value : target) value = Usable(in.Read<float>(), 0, to.notes);
}

void ReadObjectPart(CByteCursor in, std::uint16_t id, Lib3dsObjectData& data, CKeyNotes& to) {
    switch (id) {
        case LIB3DS_PIVOT:
            ReadVector(in, data.pivot, to);
            break;
        case LIB3DS_INSTANCE_NAME:
            CopyName(data.instance, in.ReadString());
            break;
        case LIB3DS_BOUNDBOX:
            ReadVector(in, data.bbox_min, to);
            ReadVector(in, data.bbox_max, to);
            break;
        case LIB3DS_MORPH_SMOOTH:
            data.morph_smooth = Usable(in.Read<float>(), 0, to.notes);
            break;
        case LIB3DS_POS_TRACK_TAG:
            ReadTrack(in, data.pos_track, 0, to);
            break;
        case LIB3DS_ROT_TRACK_TAG:
            ReadTrack(in, data.rot_track, 0, to);
            break;
        case LIB3DS_SCL_TRACK_TAG:
            ReadTrack(in, data.scl_track, 1, to);
            break;
        case LIB3DS_HIDE_TRACK_TAG:
            ReadTrack(in, data.hide_track, 0, to);
            break;
        case LIB3DS_MORPH_TRACK_TAG:
            ReadTrack(in, data.morph_track, 0, to);
            break;
        default:
            break;
    }
}

void ReadCameraPart(CByteCursor in, std::uint16_t id, Lib3dsCameraData& data, CKeyNotes& to) {
    switch (id) {
        case LIB3DS_POS_TRACK_TAG:
            ReadTrack(in, data.pos_track, 0, to);
            break;
        case LIB3DS_FOV_TRACK_TAG:
            ReadTrack(in, data.fov_track, 45, to);
            break;
        case LIB3DS_ROLL_TRACK_TAG:
            ReadTrack(in, data.roll_track, 0, to);
            break;
        default:
            break;
    }
}

void ReadLightPart(CByteCursor in, std::uint16_t id, Lib3dsLightData& data, CKeyNotes& to) {
    switch (id) {
        case LIB3DS_POS_TRACK_TAG:
            ReadTrack(in, data.pos_track, 0, to);
            break;
        case LIB3DS_COL_TRACK_TAG:
            ReadTrack(in, data.col_track, 1, to);
            break;
        case LIB3DS_HOT_TRACK_TAG:
            ReadTrack(in, data.hotspot_track, 45, to);
            break;
        case LIB3DS_FALL_TRACK_TAG:
            ReadTrack(in, data.falloff_track, 45, to);
            break;
        case LIB3DS_ROLL_TRACK_TAG:
            ReadTrack(in, data.roll_track, 0, to);
            break;
        default:
            break;
    }
}

void ReadNodePart(CByteCursor in, std::uint16_t id, Lib3dsNode& node, CKeyNotes& to) {
    switch (id) {
        case LIB3DS_NODE_ID:
            node.node_id = in.Read<std::uint16_t>();
            return;
        case LIB3DS_NODE_HDR:
            CopyName(node.name, in.ReadString());
            node.flags1 = in.Read<std::uint16_t>();
            node.flags2 = in.Read<std::uint16_t>();
            node.parent_id = in.Left() >= 2 ? in.Read<std::uint16_t>() : std::uint16_t{LIB3DS_NO_PARENT};
            return;
        default:
            break;
    }
    switch (node.type) {
        case LIB3DS_OBJECT_NODE:
            ReadObjectPart(in, id, node.data.object, to);
            break;
        case LIB3DS_CAMERA_NODE:
            ReadCameraPart(in, id, node.data.camera, to);
            break;
        case LIB3DS_LIGHT_NODE:
            ReadLightPart(in, id, node.data.light, to);
            break;
        case LIB3DS_TARGET_NODE:
            if (id == LIB3DS_POS_TRACK_TAG) ReadTrack(in, node.data.target.pos_track, 0, to);
            break;
        case LIB3DS_SPOT_NODE:
            if (id == LIB3DS_POS_TRACK_TAG) ReadTrack(in, node.data.spot.pos_track, 0, to);
            break;
        case LIB3DS_AMBIENT_NODE:
            if (id == LIB3DS_COL_TRACK_TAG) ReadTrack(in, node.data.ambient.col_track, 0, to);
            break;
        case LIB3DS_UNKNOWN_NODE:
            break;
    }
}

bool IsNode(std::uint16_t id) {
    return id >= LIB3DS_AMBIENT_NODE_TAG && id <= LIB3DS_SPOTLIGHT_NODE_TAG;
}

Lib3dsNode* NewNode(std::uint16_t id) {
    switch (id) {
        case LIB3DS_AMBIENT_NODE_TAG:
            return lib3ds_node_new_ambient();
        case LIB3DS_OBJECT_NODE_TAG:
            return lib3ds_node_new_object();
        case LIB3DS_CAMERA_NODE_TAG:
            return lib3ds_node_new_camera();
        case LIB3DS_TARGET_NODE_TAG:
            return lib3ds_node_new_target();
        case LIB3DS_LIGHT_NODE_TAG:
        case LIB3DS_SPOTLIGHT_NODE_TAG:
            return lib3ds_node_new_light();
        case LIB3DS_L_TARGET_NODE_TAG:
            return lib3ds_node_new_spot();
        default:
            return nullptr;
    }
}

void ReadHeader(CByteCursor in, Lib3dsFile& file) {
    file.keyf_revision = in.Read<std::uint16_t>();
    CopyName(file.name, in.ReadString());
    file.frames = std::clamp(in.Read<std::int32_t>(), 0, kMaxFrame);
}

void ReadSegment(CByteCursor in, Lib3dsFile& file, CNoteList& notes) {
    file.segment_from = std::clamp(in.Read<std::int32_t>(), -kMaxFrame, kMaxFrame);
    file.segment_to = std::clamp(in.Read<std::int32_t>(), -kMaxFrame, kMaxFrame);
    if (file.segment_from > file.segment_to) {
        notes.Repaired("The animation's segment ends before it begins and was turned round");
        std::swap(file.segment_from, file.segment_to);
    }
}
}  // namespace

CKeyframerReader::CKeyframerReader(Lib3dsFile& file, CNoteList& notes)
    : m_file(file), m_notes(notes), m_next(&file.nodes), m_keysLeft(scene_budget::kKeys) {}

void CKeyframerReader::Read(std::span<const std::byte> bytes, const C3dsChunk& section) {
    CChunkWalker parts(bytes, section.begin, section.end);
    for (C3dsChunk part; parts.Next(part);) {
        const CByteCursor in(bytes, part.begin, part.end);
        if (part.id == LIB3DS_KFHDR) ReadHeader(in, m_file);
        if (part.id == LIB3DS_KFSEG) ReadSegment(in, m_file, m_notes);
        if (part.id == LIB3DS_KFCURTIME)
            m_file.current_frame = std::clamp(CByteCursor(in).Read<std::int32_t>(), -kMaxFrame, kMaxFrame);
        ReadNode(bytes, part);
    }
    if (parts.End() != CChunkWalker::EEnd::Clean) m_notes.Repaired("A chunk does not fit into its parent");
}

void CKeyframerReader::ReadNode(std::span<const std::byte> bytes, const C3dsChunk& chunk) {
    if (!IsNode(chunk.id)) return;
    if (m_nodeCount >= scene_budget::kNodes)
        return m_notes.Limited("There are more than 65,000 nodes; the rest is not shown");
    Lib3dsNode* node = NewNode(chunk.id);
    if (!node) return;
    node->node_id = static_cast<Lib3dsWord>(m_nodeCount++);
    node->parent_id = LIB3DS_NO_PARENT;
    CKeyNotes keys{m_notes, m_keysLeft};
    CChunkWalker inner(bytes, chunk.begin, chunk.end);
    for (C3dsChunk piece; inner.Next(piece);) {
        ReadNodePart(CByteCursor(bytes, piece.begin, piece.end), piece.id, *node, keys);
    }
    AppendToList(m_next, node);
}

namespace {
/** Gives each node an id of its own; the first that has one keeps it. byId maps ids to nodes. */
void MakeIdsUnique(const std::vector<Lib3dsNode*>& nodes, std::vector<Lib3dsNode*>& byId, CNoteList& notes) {
    byId.assign(65536, nullptr);
    std::vector<Lib3dsNode*> homeless;
    for (Lib3dsNode* node : nodes) {
        if (node->node_id == LIB3DS_NO_PARENT || byId[node->node_id])
            homeless.push_back(node);
        else
            byId[node->node_id] = node;
    }
    std::size_t next = 0;
    for (Lib3dsNode* node : homeless) {
        while (byId[next]) ++next;
        node->node_id = static_cast<Lib3dsWord>(next);
        byId[next] = node;
        notes.Repaired("A node without an id of its own got one");
    }
}

/** Cuts the link to the parent where going up would not end. */
void BreakCycles(const std::vector<Lib3dsNode*>& nodes, CNoteList& notes) {
    // lib3ds goes down by recursion when it writes and frees.
    constexpr int kMaxDepth = static_cast<int>(scene_budget::kNodeDepth);
    constexpr int kUnknown = -1, kOnPath = -2;
    for (Lib3dsNode* node : nodes) node->user.i = kUnknown;
    std::vector<Lib3dsNode*> path;
    for (Lib3dsNode* start : nodes) {
        Lib3dsNode* node = start;
        for (; node && node->user.i == kUnknown; node = node->parent) {
            node->user.i = kOnPath;
            path.push_back(node);
        }
        if (node && node->user.i == kOnPath) {
            notes.Repaired("A node that is its own ancestor was made a root");
            path.back()->parent = nullptr;
            node = nullptr;
        }
        for (int depth = node ? node->user.i : -1; !path.empty(); path.pop_back()) {
            if (++depth >= kMaxDepth) {
                notes.Limited("A chain of more than 8,192 nodes was cut");
                path.back()->parent = nullptr;
                depth = 0;
            }
            path.back()->user.i = depth;
        }
    }
    for (Lib3dsNode* node : nodes) node->user.p = nullptr;
}
}  // namespace

void LinkNodes(Lib3dsFile& file, CNoteList& notes) {
    std::vector<Lib3dsNode*> nodes;
    for (Lib3dsNode* node = file.nodes; node; node = node->next) nodes.push_back(node);
    std::vector<Lib3dsNode*> byId;
    MakeIdsUnique(nodes, byId, notes);
    for (Lib3dsNode* node : nodes) {
        node->parent = node->parent_id == LIB3DS_NO_PARENT ? nullptr : byId[node->parent_id];
        if (node->parent_id != LIB3DS_NO_PARENT && !node->parent)
            notes.Repaired("A node whose parent is not there was made a root");
    }
    BreakCycles(nodes, notes);

    std::vector<Lib3dsNode*> lastChild(65536, nullptr);
    Lib3dsNode* lastRoot = nullptr;
    file.nodes = nullptr;
    for (Lib3dsNode* node : nodes) {
        node->next = nullptr;
        node->parent_id = node->parent ? node->parent->node_id : static_cast<Lib3dsWord>(LIB3DS_NO_PARENT);
        Lib3dsNode*& last = node->parent ? lastChild[node->parent->node_id] : lastRoot;
        Lib3dsNode*& first = node->parent ? node->parent->childs : file.nodes;
        (last ? last->next : first) = node;
        last = node;
    }
}
