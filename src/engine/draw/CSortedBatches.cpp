// SPDX-License-Identifier: MIT
#include "engine/draw/CSortedBatches.h"

#include <span>

namespace {

template <class TIndex>
CDepthSpan SortInto(CGlCurrent& gl, CGlBuffer& buffer, const CPreparedMesh& mesh,
                    const std::vector<TIndex>& all, const CPreparedBatch& batch,
                    const std::array<double, 4>& row) {
    std::vector<TIndex> ordered;
    const std::span<const TIndex> indices = std::span(all).subspan(batch.firstIndex, batch.indexCount);
    const CDepthSpan range = OrderBackToFront<TIndex>(mesh.vertices, indices, row, ordered);
    buffer.Fill(gl, CGlBuffer::ETarget::Indices, ordered.data(), ordered.size() * sizeof(TIndex),
                CGlBuffer::EUsage::Stream);
    return range;
}

}  // namespace

CDepthSpan CSortedBatches::Sort(CGlCurrent& gl, std::uint32_t node, std::uint32_t batch,
                                const CPreparedMesh& mesh, const std::array<double, 4>& row) {
    CEntry& entry = m_batches[{node, batch}];
    if (!entry.indices.IsEmpty() && entry.row == row && entry.source == mesh.vertices.data())
        return entry.range;
    const CPreparedBatch& part = mesh.batches[batch];
    entry.row = row;
    entry.source = mesh.vertices.data();
    entry.range = mesh.indices16.empty() ? SortInto(gl, entry.indices, mesh, mesh.indices32, part, row)
                                         : SortInto(gl, entry.indices, mesh, mesh.indices16, part, row);
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
