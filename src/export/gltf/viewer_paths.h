// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "base/math/CVec.h"

struct CGltfViewer;
struct CPreparedScene;

/** Where a light or a camera goes, in the file's coordinates. */
struct CViewerPath {
    struct CPose {
        CVec3 position, target;
        float rollDeg = 0;
    };
    std::size_t viewer = 0;    ///< index
    std::vector<CPose> poses;  ///< one for each frame
};

/** The paths of those that move, or hang on what moves. */
[[nodiscard]] std::vector<CViewerPath> ViewerPaths(const CPreparedScene& scene,
                                                   std::span<const CGltfViewer> viewers,
                                                   std::span<const float> frames);
