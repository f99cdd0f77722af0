// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

#include "../../model/read_3ds/C3dsBytes.h"
#include "bytes_of.h"
#include "files/CTestFolder.h"
#include "modeldb/client/C3DModelsLoadApi.h"

/** 3DS files that differ from each other, and what is sent with them. */
namespace made_models {

/** One triangle; the rest lies in a chunk that readers skip. */
inline std::string File(std::string_view rest) {
    const std::span<const std::byte> bytes = BytesOf(rest);
    return CTestFolder::TextOf(Scene(Mesh("part", Points({0, 0, 0, 1, 0, 0, 0, 1, 0}) + Faces({0, 1, 2})),
                                     Chunk(0x7777, {bytes.begin(), bytes.end()})));
}

/** The n-th of a series: most small, some with a texture that others have, some so large that a store takes them in steps. */
struct CMade {
    std::string name, file;
    CImageDataTextVec textures;

    [[nodiscard]] std::uint32_t Key() const { return C3DModelsLoadApi::CalcCrc(file.data(), file.size()); }
    [[nodiscard]] bool Upload() const {
        CBlobData data(new unsigned char[file.size()], static_cast<std::uint32_t>(file.size()));
        std::copy(file.begin(), file.end(), data.data);
        return C3DModelsLoadApi::UploadModel(name, "Upload", data, textures, nullptr);
    }
};

/** A BMP of 40 x 40 points. */
inline std::string Picture(std::uint64_t seed) {
    constexpr std::uint32_t kSide = 40, kBytes = kSide * kSide * 3, kHead = 54;
    return "BM" +
           CTestFolder::TextOf(Dwords({kHead + kBytes, 0, kHead, 40, kSide, kSide}) + Words({1, 24}) +
                               Dwords({0, kBytes, 0, 0, 0, 0})) +
           NoiseOf(kBytes, seed);
}

inline CMade Make(std::uint64_t series, std::uint64_t n) {
    CMade made;
    made.name = std::to_string(series) + "/" + std::to_string(n);
    const std::size_t size = n % 9 == 8 ? (4u << 20) + 70'000 : n % 5 == 2 ? 200'000 : 2'000;
    made.file = File(made.name + NoiseOf(size, series * 1000 + n));
    if (n % 3 == 0) {
        const std::string picture = Picture(n % 4);
        const auto bytes = BytesOf(picture);
        made.textures.push_back({"wood.bmp", {bytes.begin(), bytes.end()}});
    }
    return made;
}

}  // namespace made_models
