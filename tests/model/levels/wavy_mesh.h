// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

#include "model/prepare/CPreparedScene.h"

/** What a mesh made by WavyMesh is like. */
struct CWavy {
    unsigned side = 60;       ///< quads along a side: 2 * side * side triangles
    bool faceted = false;     ///< each face has corners of its own, with its own normal
    bool twoBatches = false;  ///< the right half is of another material
    bool texCoords = false;
};

/** A wavy square in the plane z = 0, from 0 to 1. */
inline CPreparedMesh WavyMesh(const CWavy& like) {
    CPreparedMesh mesh;
    std::vector<std::uint32_t> indices;
    const auto vertexAt = [&](unsigned x, unsigned y) {
        const float u = static_cast<float>(x) / static_cast<float>(like.side),
                    v = static_cast<float>(y) / static_cast<float>(like.side);
        mesh.texCoords.push_back({u, v});
        mesh.vertices.push_back({{u, v, 0.02f * std::sin(12 * u) * std::cos(9 * v)}, {0, 0, 32767, 0}});
        return static_cast<std::uint32_t>(mesh.vertices.size() - 1);
    };
    if (!like.faceted) {
        for (unsigned i = 0; i < (like.side + 1) * (like.side + 1); ++i)
            (void)vertexAt(i % (like.side + 1), i / (like.side + 1));
    }
    const auto corner = [&](unsigned x, unsigned y) {
        return like.faceted ? vertexAt(x, y) : y * (like.side + 1) + x;
    };
    const auto addColumns = [&](unsigned from, unsigned to, std::uint32_t material) {
        const auto first = static_cast<std::uint32_t>(indices.size());
        for (unsigned x = from; x < to; ++x) {
            for (unsigned y = 0; y < like.side; ++y) {
                for (const auto& [dx, dy] :
                     {std::pair{0u, 0u}, {1u, 0u}, {1u, 1u}, {0u, 0u}, {1u, 1u}, {0u, 1u}})
                    indices.push_back(corner(x + dx, y + dy));
            }
        }
        mesh.batches.push_back({material, first, static_cast<std::uint32_t>(indices.size()) - first});
    };
    const unsigned middle = like.twoBatches ? like.side / 2 : like.side;
    addColumns(0, middle, 0);
    if (like.twoBatches) addColumns(middle, like.side, 1);
    if (!like.texCoords) mesh.texCoords.clear();
    for (const CPreparedVertex& vertex : mesh.vertices) mesh.bounds.Add(vertex.Position());
    if (mesh.vertices.size() <= 65'536) {
        mesh.indices16.assign(indices.begin(), indices.end());
    } else {
        mesh.indices32 = std::move(indices);
    }
    return mesh;
}
