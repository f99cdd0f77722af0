// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string_view>
#include <vector>

/** Builds 3DS files byte by byte, right or wrong on purpose. */
using CBytes = std::vector<std::byte>;

template <class T>
void Put(CBytes& out, T value) {
    const auto* begin = reinterpret_cast<const std::byte*>(&value);
    out.insert(out.end(), begin, begin + sizeof(T));
}

inline CBytes operator+(CBytes a, const CBytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

template <class T>
CBytes Values(std::initializer_list<T> values) {
    CBytes out;
    for (const T value : values) Put(out, value);
    return out;
}
inline CBytes Floats(std::initializer_list<float> values) {
    return Values(values);
}
inline CBytes Words(std::initializer_list<std::uint16_t> values) {
    return Values(values);
}
inline CBytes Dwords(std::initializer_list<std::uint32_t> values) {
    return Values(values);
}

inline CBytes Text(std::string_view text) {
    CBytes out(text.size() + 1);
    std::memcpy(out.data(), text.data(), text.size());
    return out;
}

/** A chunk with its true size, or one that lies. */
inline CBytes Chunk(std::uint16_t id, const CBytes& contents = {}, std::int64_t size = -1) {
    CBytes out;
    Put(out, id);
    Put(out, static_cast<std::uint32_t>(size < 0 ? static_cast<std::int64_t>(contents.size()) + 6 : size));
    return out + contents;
}

inline CBytes Points(std::initializer_list<float> values) {
    return Chunk(0x4110, Words({static_cast<std::uint16_t>(values.size() / 3)}) + Floats(values));
}

/** Eight corners of a cube of side 2 round a point. */
inline CBytes CubePoints(float x = 0, float y = 0, float z = 0) {
    return Points({x - 1, y - 1, z - 1, x + 1, y - 1, z - 1, x - 1, y + 1, z - 1, x + 1, y + 1, z - 1,
                   x - 1, y - 1, z + 1, x + 1, y - 1, z + 1, x - 1, y + 1, z + 1, x + 1, y + 1, z + 1});
}

/** Triangles of three corners each, with further chunks inside the face list. */
inline CBytes Faces(std::initializer_list<std::uint16_t> corners, const CBytes& inner = {}) {
    CBytes list = Words({static_cast<std::uint16_t>(corners.size() / 3)});
    for (std::size_t i = 0; i < corners.size(); ++i) {
        Put(list, corners.begin()[i]);
        if (i % 3 == 2) Put(list, std::uint16_t{7});
    }
    return Chunk(0x4120, list + inner);
}
/** Two for each side: bottom, top, front, back, left, right. */
inline CBytes CubeFaces(const CBytes& inner = {}) {
    return Faces({0, 2, 3, 0, 3, 1, 4, 5, 7, 4, 7, 6, 0, 1, 5, 0, 5, 4,
                  2, 6, 7, 2, 7, 3, 0, 4, 6, 0, 6, 2, 1, 3, 7, 1, 7, 5},
                 inner);
}

inline CBytes Smoothing(std::initializer_list<std::uint32_t> masks) {
    return Chunk(0x4150, Dwords(masks));
}

inline CBytes Matrix(std::initializer_list<float> values) {
    return Chunk(0x4160, Floats(values));
}

inline CBytes Mesh(std::string_view name, const CBytes& parts) {
    return Chunk(0x4000, Text(name) + Chunk(0x4100, parts));
}
inline CBytes Cube(std::string_view name = "Cube") {
    return Mesh(name, CubePoints() + CubeFaces());
}

inline CBytes Material(std::string_view name, const CBytes& parts = {}) {
    return Chunk(0xAFFF, Chunk(0xA000, Text(name)) + parts);
}

inline CBytes NodeHeader(std::string_view name, std::uint16_t parent) {
    return Chunk(0xB010, Text(name) + Words({0, 0, parent}));
}
inline CBytes NodeId(std::uint16_t id) {
    return Chunk(0xB030, Words({id}));
}

/** A track whose keys are given ready made. */
inline CBytes Track(std::uint16_t id, std::uint32_t count, const CBytes& keys, std::uint16_t flags = 0) {
    return Chunk(id, Words({flags}) + Dwords({0, 0, count}) + keys);
}
inline CBytes Key(std::uint32_t frame, std::initializer_list<float> values) {
    return Dwords({frame}) + Words({0}) + Floats(values);
}
inline CBytes ObjectNode(std::uint16_t id, std::string_view name, std::uint16_t parent,
                         const CBytes& parts = {}) {
    return Chunk(0xB002, NodeId(id) + NodeHeader(name, parent) + parts);
}
inline CBytes AtPosition(float x, float y, float z) {
    return Track(0xB020, 1, Key(0, {x, y, z}));
}

inline CBytes Keyframer(const CBytes& nodes) {
    return Chunk(0xB000, Chunk(0xB008, Dwords({0, 100})) + nodes);
}

/** The whole file from its mesh section and, if any, its keyframer section. */
inline CBytes Scene(const CBytes& meshData, const CBytes& keyframer = {}) {
    return Chunk(0x4D4D, Chunk(0x0002, Dwords({3})) + Chunk(0x3D3D, meshData) + keyframer);
}
