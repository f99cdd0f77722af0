// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/pipeline/CFrameView.h"
#include "model/prepare/CPreparedScene.h"

/** All that a picture of a scene depends on but the values of its materials. Only compared. */
struct CStillScene {
    struct CNode {
        bool visible, mirrored;
        int mesh;
        CMat4 meshToWorld;
        friend bool operator==(const CNode&, const CNode&) = default;
    };
    struct CMesh {
        std::uint64_t stamp;
        const void* vertices;
        std::vector<CPreparedBatch> batches;
        friend bool operator==(const CMesh&, const CMesh&) = default;
    };

    CMatrix4d projection, modelView;
    std::array<int, 4> viewport{};
    std::vector<CNode> nodes;
    std::vector<CMesh> meshes;
    std::vector<const void*> pictures;
    std::vector<CPreparedLight> lights;
    CVec3 ambientLight;
    bool headlightJoins = false;
    std::array<int, 4> options{};  ///< of the drawing, whatever they mean
    std::vector<bool> dimmed;      ///< by node

    [[nodiscard]] static CStillScene Of(const CPreparedScene& scene, const CFrameView& view);
    friend bool operator==(const CStillScene&, const CStillScene&) = default;
};
