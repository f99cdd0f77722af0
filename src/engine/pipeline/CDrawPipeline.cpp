// SPDX-License-Identifier: MIT
#include "engine/pipeline/CDrawPipeline.h"

#include "model/prepare/CPreparedScene.h"

CMapRows MapRows(const CPreparedMap& map) {
    const std::array<float, 6> t = map.UvTransform();
    return {{t[0], t[2], t[4]}, {-t[1], -t[3], 1 - t[5]}};
}
