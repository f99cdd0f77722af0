// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "model/prepare/CPreparedScene.h"

/** Knows which meshes of a scene are alike, byte for byte, and so which nodes lie wholly in others. */
class CEqualMeshes {
  public:
    /** Compares the meshes: only those whose bounds and numbers agree are read. Meshes whose arrays were freed keep what was
     * found before. */
    void Update(const CPreparedScene& scene);
    void Clear();

    /** For each node whether an earlier visible one shows the same mesh at the same place; empty when none does. What
     * is opaque need not be drawn again. */
    [[nodiscard]] std::vector<bool> FindRepeated(const CPreparedScene& scene) const;

  private:
    /** What tells that a mesh is the same as before. */
    struct CKnown {
        std::uint64_t stamp;
        const void* vertices;  ///< only compared
        std::vector<CPreparedBatch> batches;
    };
    [[nodiscard]] bool IsKnown(const CPreparedScene& scene) const;

    std::vector<CKnown> m_known;
    std::vector<std::uint32_t> m_first;  ///< for each mesh the first one like it
};
