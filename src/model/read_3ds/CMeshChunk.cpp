// SPDX-License-Identifier: MIT
#include "model/read_3ds/CMeshChunk.h"

#include <lib3ds/chunk.h>

#include <algorithm>
#include <cmath>

#include "model/read_3ds/read_name.h"

namespace {
constexpr std::size_t kMaxGroups = 65535;

/** A 16-bit count and so many entries of a fixed size. Leaves the cursor behind them. */
CArraySpan ReadArray(CByteCursor& in, std::size_t entrySize, const char* what, CNoteList& notes) {
    const std::size_t claimed = in.Read<std::uint16_t>();
    const std::size_t present = in.Left() / entrySize;
    if (claimed > present) notes.Repaired("A list is shorter than it says", what);
    const CArraySpan result{in.Position(), std::min(claimed, present)};
    in.Skip(result.count * entrySize);
    return result;
}

/** Broken files hold a second list; the longer one wins, as the rest of the mesh refers to it more likely. */
void KeepLonger(CArraySpan& current, const CArraySpan& found) {
    if (found.count > current.count) current = found;
}

void ReadMatrix(CByteCursor in, CMeshChunk& mesh, CNoteList& notes) {
    float values[12];
    for (float& value : values) value = in.Read<float>();
    const bool finite =
        std::all_of(std::begin(values), std::end(values), [](float v) { return std::isfinite(v); });
    if (in.RanOut() || !finite) {
        notes.Repaired("A mesh matrix is short or not finite and was left out");
        return;
    }
    for (int row = 0; row < 4; ++row) std::copy_n(values + row * 3, 3, mesh.matrix[row]);
}

void ReadMapping(CByteCursor in, CMeshChunk& mesh) {
    mesh.mapType = in.Read<std::uint16_t>();
    for (float& value : mesh.mapping) {
        value = in.Read<float>();
        if (!std::isfinite(value)) value = 0;
    }
    mesh.hasMapping = !in.RanOut();
}

void ReadGroup(CByteCursor in, CMeshChunk& mesh, CNoteList& notes) {
    if (mesh.groups.size() >= kMaxGroups) return;
    CMaterialGroup group;
    group.material = ReadName(in, notes);
    group.faces = ReadArray(in, 2, "faces of a material", notes);
    mesh.groups.push_back(std::move(group));
}

void ReadBoxMap(CByteCursor in, CMeshChunk& mesh, CNoteList& notes) {
    std::vector<std::string> names(6);
    for (std::string& name : names) name = ReadName(in, notes);
    if (!in.RanOut()) mesh.boxMap = std::move(names);
}

void ReadSmoothing(const C3dsChunk& chunk, CMeshChunk& mesh) {
    KeepLonger(mesh.smoothing, {chunk.begin, (chunk.end - chunk.begin) / 4});
}

void ReadFaces(std::span<const std::byte> bytes, const C3dsChunk& chunk, CMeshChunk& mesh, CNoteList& notes);

/** Chunks of the mesh and of its face list alike: one real exporter writes the latter's
 * beside it, not in it. */
void ReadPart(std::span<const std::byte> bytes, const C3dsChunk& chunk, CMeshChunk& mesh, CNoteList& notes) {
    CByteCursor in(bytes, chunk.begin, chunk.end);
    switch (chunk.id) {
        case LIB3DS_POINT_ARRAY:
            KeepLonger(mesh.points, ReadArray(in, 12, "vertices", notes));
            break;
        case LIB3DS_POINT_FLAG_ARRAY:
            KeepLonger(mesh.pointFlags, ReadArray(in, 2, "vertex flags", notes));
            break;
        case LIB3DS_TEX_VERTS:
            KeepLonger(mesh.texels, ReadArray(in, 8, "texture coordinates", notes));
            break;
        case LIB3DS_FACE_ARRAY:
            ReadFaces(bytes, chunk, mesh, notes);
            break;
        case LIB3DS_SMOOTH_GROUP:
            ReadSmoothing(chunk, mesh);
            break;
        case LIB3DS_MSH_MAT_GROUP:
            ReadGroup(in, mesh, notes);
            break;
        case LIB3DS_MSH_BOXMAP:
            ReadBoxMap(in, mesh, notes);
            break;
        case LIB3DS_MESH_MATRIX:
            ReadMatrix(in, mesh, notes);
            break;
        case LIB3DS_MESH_COLOR:
            mesh.color = in.Read<std::uint8_t>();
            break;
        case LIB3DS_MESH_TEXTURE_INFO:
            ReadMapping(in, mesh);
            break;
        default:
            break;
    }
}

void ReadFaces(std::span<const std::byte> bytes, const C3dsChunk& chunk, CMeshChunk& mesh, CNoteList& notes) {
    CByteCursor in(bytes, chunk.begin, chunk.end);
    KeepLonger(mesh.faces, ReadArray(in, 8, "faces", notes));
    CChunkWalker parts(bytes, in.Position(), chunk.end);
    for (C3dsChunk part; parts.Next(part);) {
        if (part.id != LIB3DS_FACE_ARRAY) ReadPart(bytes, part, mesh, notes);
    }
}
}  // namespace

CMeshChunk CMeshChunk::Parse(std::span<const std::byte> bytes, const C3dsChunk& chunk, CNoteList& notes) {
    CMeshChunk mesh;
    CChunkWalker parts(bytes, chunk.begin, chunk.end);
    for (C3dsChunk part; parts.Next(part);) ReadPart(bytes, part, mesh, notes);
    if (parts.End() != CChunkWalker::EEnd::Clean) notes.Repaired("A chunk does not fit into its parent");
    return mesh;
}
