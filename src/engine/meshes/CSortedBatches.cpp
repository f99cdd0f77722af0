// SPDX-License-Identifier: MIT
#include "engine/meshes/CSortedBatches.h"

#include <span>

namespace {

template <class TIndex>
CDepthSpan SortInto(CGlCurrent& gl, CGlBuffer& buffer, std::span<const CPreparedVertex> vertices,
                    std::span<const TIndex> all, const CPreparedBatch& batch,
                    const std::array<double, 4>& row) {
    std::vector<TIndex> ordered;
    const CDepthSpan range =
        OrderBackToFront<TIndex>(vertices, all.subspan(batch.firstIndex, batch.indexCount), row, ordered);
    buffer.Fill(gl, CGlBuffer::ETarget::Indices, ordered.data(), ordered.size() * sizeof(TIndex),
                CGlBuffer::EUsage::Stream);
    return range;
}

}  // namespace

CDepthSpan CSortedBatches::Sort(CGlCurrent& gl, std::uint32_t node, std::uint32_t batch,
                                const CSortSource& source, const CPreparedBatch& part,
                                const std::array<double, 4>& row) {
    CEntry& entry = m_batches[{node, batch}];
    if (!entry.indices.IsEmpty() && entry.row == row && entry.source == source.Identity()) return entry.range;
    entry.row = row;
    entry.source = source.Identity();
    entry.range = source.indices16.empty()
                      ? SortInto(gl, entry.indices, source.vertices, source.indices32, part, row)
                      : SortInto(gl, entry.indices, source.vertices, source.indices16, part, row);
    return entry.range;
}

void CSortedBatches::BindIndices(CGlCurrent& gl, std::uint32_t node, std::uint32_t batch) const {
    const auto found = m_batches.find({node, batch});
    if (found != m_batches.end()) found->second.indices.Bind(gl, CGlBuffer::ETarget::Indices);
}

std::size_t CSortedBatches::Bytes() const {
    std::size_t sum = 0;
    for (const auto& [key, entry] : m_batches) sum += entry.indices.Bytes();
    return sum;
}
