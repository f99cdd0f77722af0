// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include "model/prepare/CPreparedScene.h"

class CScene;

/** A mesh that changes its shape: all shapes have the same vertices, in the same order. */
struct CGltfMorph {
    CPreparedMesh base;                                ///< in the first shape
    std::vector<std::vector<CPreparedVertex>> others;  ///< the vertices in the other shapes
    /** The shapes on the way from one mesh of the scene to another, evenly: 0 is base's, i others[i - 1]'s. */
    std::map<std::pair<std::size_t, std::size_t>, std::vector<std::size_t>> ways;
    CBox bounds;  ///< of all shapes

    /** The weight of each of others for a shape that the node's track gives. */
    [[nodiscard]] std::vector<float> WeightsOf(const CMorphShape& shape) const;
};

/** The morphs of the nodes that are shown, by mesh. Nodes beyond a budget are left out and keep the shape that they
 * have, as are those that have one shape only. */
[[nodiscard]] std::map<std::size_t, CGltfMorph> MorphsOf(const CScene& model, const CPreparedScene& scene,
                                                         const std::vector<bool>& shownNodes);
