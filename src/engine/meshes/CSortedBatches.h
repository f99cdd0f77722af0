// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <utility>

#include "engine/gl/CGlBuffer.h"
#include "engine/plan/triangle_order.h"

/** Index buffers of transparent parts with their triangles in order from back to front. They are kept from
 * one drawing to the next and sorted again only when the view of that part has changed. */
class CSortedBatches {
  public:
    /** Larger parts are drawn in the file's order: sorting them would cost more than drawing. */
    static constexpr std::uint32_t kMaxTriangles = 50'000;

    [[nodiscard]] static bool Sorts(const CPreparedBatch& batch) {
        return batch.indexCount / 3 < kMaxTriangles;
    }
    /** Sorts one batch of one node by the depth row of its mesh. part: the batch among the source's indices. Returns the
     * range of its depths. */
    CDepthSpan Sort(CGlCurrent& gl, std::uint32_t node, std::uint32_t batch, const CSortSource& source,
                    const CPreparedBatch& part, const std::array<double, 4>& row);
    /** Binds the indices of a batch that Sort was called for; they start at 0. */
    void BindIndices(CGlCurrent& gl, std::uint32_t node, std::uint32_t batch) const;
    void Clear() { m_batches.clear(); }
    [[nodiscard]] std::size_t Bytes() const;

  private:
    struct CEntry {
        CGlBuffer indices;
        std::array<double, 4> row{};
        const void* source = nullptr;  ///< CSortSource::Identity: an edit may renumber nodes
        CDepthSpan range;
    };
    std::map<std::pair<std::uint32_t, std::uint32_t>, CEntry> m_batches;
};
