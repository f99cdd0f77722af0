// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <vector>

#include "base/math/CMatrix.h"

/** Reads what is written: a plain reader of binary glTF, as other programs have it, with the animation. Throws where the
 * file is not as it should be. */
class CGltfReader {
  public:
    using CJson = nlohmann::json;
    struct CCorner {
        CVec3d position, normal;  ///< in the file's coordinates
        std::array<double, 2> uv{};
    };
    using CTriangle = std::array<CCorner, 3>;

    explicit CGltfReader(std::span<const std::byte> glb);

    [[nodiscard]] const CJson& Json() const { return m_json; }
    /** Poses all nodes as they are at a time of the animation; without a call they are as written. */
    void SetTime(double seconds);
    /** The node of that name; -1: none. */
    [[nodiscard]] int Find(const std::string& name) const;
    /** From the node's coordinates to the file's. */
    [[nodiscard]] CMatrix4d WorldOf(int node) const;
    /** What a node shows, itself and below it, as far as nodes have no name. */
    [[nodiscard]] std::vector<CTriangle> TrianglesOf(int node) const;
    /** The bytes of a picture. */
    [[nodiscard]] std::vector<std::byte> Picture(std::size_t image) const;

  private:
    struct CPose {
        std::array<double, 3> translation{0, 0, 0}, scale{1, 1, 1};
        std::array<double, 4> rotation{0, 0, 0, 1};
        std::vector<double> weights;
    };
    void Unpack(std::span<const std::byte> binary);
    [[nodiscard]] std::vector<double> Values(std::size_t accessor) const;
    [[nodiscard]] std::vector<double> Sampled(const CJson& sampler, const std::string& path,
                                              double time) const;
    void AddMesh(int node, std::vector<CTriangle>& triangles) const;

    CJson m_json;
    std::vector<std::vector<std::byte>> m_views;
    std::vector<CPose> m_poses;
    std::vector<int> m_parents;
};
