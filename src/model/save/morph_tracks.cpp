// SPDX-License-Identifier: MIT
#include "model/save/morph_tracks.h"

#include <lib3ds/chunk.h>
#include <lib3ds/file.h>
#include <lib3ds/node.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

namespace {
constexpr std::size_t kHeader = 6;
using CBytes = std::vector<std::byte>;

template <class T>
T At(std::span<const std::byte> bytes, std::size_t at) {
    T value;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

template <class T>
requires std::is_arithmetic_v<T>
void Append(CBytes& out, T value) {
    const auto* begin = reinterpret_cast<const std::byte*>(&value);
    out.insert(out.end(), begin, begin + sizeof value);
}

void AppendBytes(CBytes& out, std::span<const std::byte> bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}

void AppendChunk(CBytes& out, std::uint16_t id, std::span<const std::byte> contents) {
    Append(out, id);
    Append(out, static_cast<std::uint32_t>(contents.size() + kHeader));
    AppendBytes(out, contents);
}

/** Calls visit(id, chunk with its header, contents) for the chunks that lie side by side in bytes. */
template <class Visit>
void ForEachChunk(std::span<const std::byte> bytes, Visit visit) {
    while (bytes.size() >= kHeader) {
        const std::size_t size = std::clamp<std::size_t>(At<std::uint32_t>(bytes, 2), kHeader, bytes.size());
        visit(At<std::uint16_t>(bytes, 0), bytes.first(size), bytes.subspan(kHeader, size - kHeader));
        bytes = bytes.subspan(size);
    }
}

void AppendKey(CBytes& out, const Lib3dsMorphKey& key) {
    Append(out, std::int32_t{key.tcb.frame});
    Append(out, static_cast<std::uint16_t>(key.tcb.flags));
    if (key.tcb.flags & LIB3DS_USE_TENSION) Append(out, key.tcb.tens);
    if (key.tcb.flags & LIB3DS_USE_CONTINUITY) Append(out, key.tcb.cont);
    if (key.tcb.flags & LIB3DS_USE_BIAS) Append(out, key.tcb.bias);
    if (key.tcb.flags & LIB3DS_USE_EASE_TO) Append(out, key.tcb.ease_to);
    if (key.tcb.flags & LIB3DS_USE_EASE_FROM) Append(out, key.tcb.ease_from);
    AppendBytes(out, std::as_bytes(std::span(key.name, strnlen(key.name, sizeof key.name - 1))));
    Append(out, std::uint8_t{0});
}

CBytes TrackOf(const Lib3dsMorphTrack& track) {
    CBytes keys, contents;
    std::uint32_t count = 0;
    for (const Lib3dsMorphKey* key = track.keyL; key; key = key->next, ++count) AppendKey(keys, *key);
    Append(contents, static_cast<std::uint16_t>(track.flags));
    Append(contents, std::uint64_t{0});
    Append(contents, count);
    AppendBytes(contents, keys);
    return contents;
}

/** In the order in which lib3ds writes them; without recursion, as trees may be deep. */
std::vector<const Lib3dsNode*> ObjectNodes(const Lib3dsFile& file) {
    std::vector<const Lib3dsNode*> nodes, pending{file.nodes};
    while (!pending.empty()) {
        const Lib3dsNode* node = pending.back();
        pending.pop_back();
        if (!node) continue;
        if (node->type == LIB3DS_OBJECT_NODE) nodes.push_back(node);
        pending.push_back(node->next);
        pending.push_back(node->childs);
    }
    return nodes;
}

CBytes WithTrack(std::span<const std::byte> contents, const Lib3dsNode& node) {
    CBytes out;
    ForEachChunk(contents, [&](std::uint16_t id, auto chunk, auto) {
        if (id != LIB3DS_MORPH_TRACK_TAG) AppendBytes(out, chunk);
    });
    if (node.data.object.morph_track.keyL)
        AppendChunk(out, LIB3DS_MORPH_TRACK_TAG, TrackOf(node.data.object.morph_track));
    return out;
}

CBytes WithTracks(std::span<const std::byte> keyframer, const std::vector<const Lib3dsNode*>& nodes) {
    CBytes out;
    auto node = nodes.begin();
    ForEachChunk(keyframer, [&](std::uint16_t id, auto chunk, auto contents) {
        if (id == LIB3DS_OBJECT_NODE_TAG && node != nodes.end())
            AppendChunk(out, id, WithTrack(contents, **node++));
        else
            AppendBytes(out, chunk);
    });
    return out;
}
}  // namespace

void WriteMorphTracks(const Lib3dsFile& file, std::vector<std::byte>& bytes) {
    const std::vector<const Lib3dsNode*> nodes = ObjectNodes(file);
    const auto morphs = [](const Lib3dsNode* node) { return node->data.object.morph_track.keyL != nullptr; };
    if (bytes.size() < kHeader || std::none_of(nodes.begin(), nodes.end(), morphs)) return;
    CBytes sections, whole;
    ForEachChunk(std::span(bytes).subspan(kHeader), [&](std::uint16_t id, auto chunk, auto contents) {
        if (id == LIB3DS_KFDATA)
            AppendChunk(sections, id, WithTracks(contents, nodes));
        else
            AppendBytes(sections, chunk);
    });
    AppendChunk(whole, At<std::uint16_t>(bytes, 0), sections);
    bytes = std::move(whole);
}
