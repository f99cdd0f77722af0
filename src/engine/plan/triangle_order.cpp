// SPDX-License-Identifier: MIT
#include "engine/plan/triangle_order.h"

#include <algorithm>

namespace {

/** For each triangle its depth, and the range of all. */
template <class TIndex>
CDepthSpan MeasureDepths(std::span<const CPreparedVertex> vertices, std::span<const TIndex> indices,
                         const std::array<double, 4>& row, std::vector<float>& depths) {
    const auto a = static_cast<float>(row[0]), b = static_cast<float>(row[1]), c = static_cast<float>(row[2]);
    const auto offset = static_cast<float>(row[3]);
    CDepthSpan range;
    depths.resize(indices.size() / 3);
    for (std::size_t i = 0; i < depths.size(); ++i) {
        const CVec3 sum = vertices[indices[3 * i]].Position() + vertices[indices[3 * i + 1]].Position() +
                          vertices[indices[3 * i + 2]].Position();
        depths[i] = (a * sum.x + b * sum.y + c * sum.z) * (1.0f / 3.0f) + offset;
        range.min = std::min(range.min, depths[i]);
        range.max = std::max(range.max, depths[i]);
    }
    return range;
}

/** One stable pass of a radix sort by the eight bits from shift on. */
void SortByByte(const std::vector<std::uint32_t>& from, std::vector<std::uint32_t>& to,
                const std::vector<std::uint16_t>& keys, unsigned shift) {
    std::array<std::uint32_t, 257> start{};
    const auto byte = [shift](std::uint16_t key) { return static_cast<std::uint32_t>(key) >> shift & 0xFFu; };
    for (std::uint16_t key : keys) ++start[byte(key) + 1];
    for (std::size_t i = 1; i < start.size(); ++i) start[i] += start[i - 1];
    to.resize(from.size());
    for (std::uint32_t triangle : from) to[start[byte(keys[triangle])]++] = triangle;
}

}  // namespace

template <class TIndex>
CDepthSpan OrderBackToFront(std::span<const CPreparedVertex> vertices, std::span<const TIndex> indices,
                            const std::array<double, 4>& row, std::vector<TIndex>& ordered) {
    std::vector<float> depths;
    const CDepthSpan range = MeasureDepths(vertices, indices, row, depths);
    const float scale = range.max > range.min ? 65535.0f / (range.max - range.min) : 0.0f;
    std::vector<std::uint16_t> keys(depths.size());
    std::vector<std::uint32_t> order(depths.size()), other;
    for (std::size_t i = 0; i < depths.size(); ++i) {
        keys[i] = static_cast<std::uint16_t>(std::clamp((range.max - depths[i]) * scale, 0.0f, 65535.0f));
        order[i] = static_cast<std::uint32_t>(i);
    }
    SortByByte(order, other, keys, 0);
    SortByByte(other, order, keys, 8);
    ordered.clear();
    ordered.reserve(indices.size());
    for (std::uint32_t triangle : order) {
        const auto first = indices.begin() + static_cast<std::ptrdiff_t>(triangle) * 3;
        ordered.insert(ordered.end(), first, first + 3);
    }
    return range;
}

template CDepthSpan OrderBackToFront(std::span<const CPreparedVertex>, std::span<const std::uint16_t>,
                                     const std::array<double, 4>&, std::vector<std::uint16_t>&);
template CDepthSpan OrderBackToFront(std::span<const CPreparedVertex>, std::span<const std::uint32_t>,
                                     const std::array<double, 4>&, std::vector<std::uint32_t>&);
