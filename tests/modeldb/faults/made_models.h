// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "modeldb/client/C3DModelsLoadApi.h"

/** 3DS files that differ from each other, and what is sent with them. */
namespace made_models {

inline std::string Chunk(std::uint16_t number, std::string_view content) {
    const auto size = static_cast<std::uint32_t>(content.size() + 6);
    std::string chunk(6, '\0');
    std::memcpy(chunk.data(), &number, sizeof(number));
    std::memcpy(chunk.data() + 2, &size, sizeof(size));
    return chunk.append(content);
}

template <class T>
std::string Raw(std::initializer_list<T> values) {
    return {reinterpret_cast<const char*>(values.begin()), values.size() * sizeof(T)};
}

/** One triangle; the rest lies in a chunk that readers skip. */
inline std::string File(std::string_view rest) {
    const std::string points = Raw<std::uint16_t>({3}) + Raw<float>({0, 0, 0, 1, 0, 0, 0, 1, 0});
    const std::string faces = Raw<std::uint16_t>({1, 0, 1, 2, 0});
    const std::string mesh = Chunk(0x4100, Chunk(0x4110, points) + Chunk(0x4120, faces));
    const std::string object = Chunk(0x4000, std::string("part").append(1, '\0') + mesh);
    const std::string edit = Chunk(0x3D3D, Chunk(0x3D3E, Raw<std::uint32_t>({3})) + object);
    return Chunk(0x4D4D, Chunk(0x0002, Raw<std::uint32_t>({3})) + edit + Chunk(0x7777, rest));
}

/** The n-th of a series: most small, some with a texture that others have, some so large that a store takes them in steps. */
struct CMade {
    std::string name, file;
    CImageDataTextVec textures;

    [[nodiscard]] std::uint32_t Key() const { return C3DModelsLoadApi::CalcCrc(file.data(), file.size()); }
    [[nodiscard]] bool Upload() const {
        CBlobData data;
        data.data = new unsigned char[file.size()];
        data.size = static_cast<std::uint32_t>(file.size());
        std::copy(file.begin(), file.end(), data.data);
        return C3DModelsLoadApi::UploadModel(name, "Upload", data, textures, nullptr);
    }
};

/** Bytes that no packer makes smaller: always the same for the same seed. */
inline std::string Noise(std::size_t size, std::uint64_t seed) {
    std::string noise(size, '\0');
    for (char& c : noise)
        c = static_cast<char>((seed = seed * 6364136223846793005ULL + 1442695040888963407ULL) >> 56);
    return noise;
}

/** A BMP of 40 x 40 points. */
inline std::string Picture(std::uint64_t seed) {
    constexpr std::uint32_t kSide = 40, kBytes = kSide * kSide * 3, kHead = 54;
    return "BM" + Raw<std::uint32_t>({kHead + kBytes, 0, kHead, 40, kSide, kSide}) +
           Raw<std::uint16_t>({1, 24}) + Raw<std::uint32_t>({0, kBytes, 0, 0, 0, 0}) + Noise(kBytes, seed);
}

inline CMade Make(std::uint64_t series, std::uint64_t n) {
    CMade made;
    made.name = std::to_string(series) + "/" + std::to_string(n);
    const std::size_t size = n % 9 == 8 ? (4u << 20) + 70'000 : n % 5 == 2 ? 200'000 : 2'000;
    made.file = File(made.name + Noise(size, series * 1000 + n));
    if (n % 3 == 0) {
        const std::string picture = Picture(n % 4);
        const auto bytes = std::as_bytes(std::span(picture));
        made.textures.push_back({"wood.bmp", {bytes.begin(), bytes.end()}});
    }
    return made;
}

}  // namespace made_models
