// SPDX-License-Identifier: MIT
#include "model/read_3ds/keyframer_reading.h"

#include <lib3ds/chunk.h>
#include <lib3ds/file.h>
#include <lib3ds/node.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "model/read_3ds/track_reading.h"
#include "model/scene/lib3ds_list.h"
#include "model/scene/lib3ds_name.h"
#include "model/scene/scene_budget.h"

namespace {
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
