// SPDX-License-Identifier: MIT
#include "export/gltf/parts/CGltfGeometry.h"

#include <meshoptimizer.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "model/prepare/CPreparedScene.h"

namespace {

constexpr int kLargestPosition = (1 << CGltfGeometry::kPositionBits) - 1;

template <class T>
std::vector<std::byte> BytesOf(const std::vector<T>& values) {
    std::vector<std::byte> bytes(values.size() * sizeof(T));
    if (!bytes.empty()) std::memcpy(bytes.data(), values.data(), bytes.size());
    return bytes;
}

float Sound(float value) {
    return std::isfinite(value) ? value : 0.0f;
}

/** A degenerate corner has no normal, and glTF takes none but unit vectors. */
CVec3 UnitNormal(const CPreparedVertex& vertex) {
    const CVec3 normal = Normalized(vertex.Normal());
    return normal == CVec3{} ? CVec3{0, 0, 1} : normal;
}

/** The bounds of what was written, component by component. */
class CBounds {
  public:
    void Add(std::size_t i, double value) {
        m_min[i] = std::min(m_min[i], value);
        m_max[i] = std::max(m_max[i], value);
    }
    void Give(std::array<double, 3>& min, std::array<double, 3>& max) const {
        if (m_min[0] <= m_max[0]) {
            min = m_min;
            max = m_max;
        }
    }

  private:
    static constexpr double kFar = std::numeric_limits<double>::infinity();
    std::array<double, 3> m_min{kFar, kFar, kFar}, m_max{-kFar, -kFar, -kFar};
};

/** Whether there are vertices of so many triangles that the better order would take the square of their number. */
bool HasHubs(std::span<const unsigned> indices, std::size_t vertices) {
    constexpr std::uint64_t kMostTrianglesAtVertex = 1000;  // on average, each time that a corner leads there
    std::vector<std::uint64_t> corners(vertices);
    for (const unsigned index : indices) ++corners[index];
    std::uint64_t squares = 0;
    for (const std::uint64_t count : corners) squares += count * count;
    return squares > kMostTrianglesAtVertex * indices.size();
}

/** Triangles in an order that packs well, and vertices in the order of their first use. */
std::vector<unsigned> Reorder(std::vector<unsigned> indices, std::size_t vertices, CGltfGeometry& geometry) {
    std::vector<unsigned> sorted(indices.size());
    for (const CGltfRange& range : geometry.ranges) {
        constexpr unsigned kCacheSize = 16;
        unsigned* const to = &sorted[range.first];
        const unsigned* const from = &indices[range.first];
        if (HasHubs({from, range.count}, vertices))
            meshopt_optimizeVertexCacheFifo(to, from, range.count, vertices, kCacheSize);
        else
            meshopt_optimizeVertexCacheStrip(to, from, range.count, vertices);
    }
    std::vector<unsigned> remap(vertices);
    geometry.vertexCount = static_cast<std::uint32_t>(
        meshopt_optimizeVertexFetchRemap(remap.data(), sorted.data(), sorted.size(), vertices));
    geometry.order.resize(geometry.vertexCount);
    for (std::uint32_t i = 0; i < remap.size(); ++i) {
        if (remap[i] < geometry.vertexCount) geometry.order[remap[i]] = i;
    }
    for (unsigned& index : sorted) index = remap[index];
    return sorted;
}

void MakeIndices(const CPreparedMesh& mesh, std::span<const CGltfRange> ranges, bool packs,
                 CGltfGeometry& geometry) {
    std::vector<unsigned> indices;
    for (const CGltfRange& range : ranges) {
        geometry.ranges.push_back({static_cast<std::uint32_t>(indices.size()), range.count});
        for (std::uint32_t i = 0; i < range.count; ++i) indices.push_back(mesh.Index(range.first + i));
    }
    geometry.vertexCount = static_cast<std::uint32_t>(mesh.vertices.size());
    if (packs) indices = Reorder(std::move(indices), mesh.vertices.size(), geometry);
    // The largest number of 16 bits is no index.
    geometry.hasWideIndices = geometry.vertexCount > 0xFFFF;
    if (geometry.hasWideIndices) {
        geometry.indices = BytesOf(indices);
    } else {
        geometry.indices = BytesOf(std::vector<std::uint16_t>(indices.begin(), indices.end()));
    }
}

void MakeFloats(const CPreparedMesh& mesh, CGltfGeometry& geometry) {
    std::vector<float> positions, normals, texCoords;
    positions.reserve(mesh.vertices.size() * 3);
    normals.reserve(mesh.vertices.size() * 3);
    CBounds bounds;
    for (const CPreparedVertex& vertex : mesh.vertices) {
        for (std::size_t i = 0; i < 3; ++i) {
            positions.push_back(Sound(vertex.position[i]));
            bounds.Add(i, static_cast<double>(positions.back()));
        }
        const CVec3 normal = UnitNormal(vertex);
        normals.insert(normals.end(), {normal.x, normal.y, normal.z});
    }
    for (const CVec2& uv : mesh.texCoords)
        texCoords.insert(texCoords.end(), {Sound(uv.x), Sound(1 - Sound(uv.y))});
    bounds.Give(geometry.min, geometry.max);
    geometry.positions = BytesOf(positions);
    geometry.normals = BytesOf(normals);
    geometry.texCoords = BytesOf(texCoords);
}

/** One step for all three axes, so that taking it back keeps directions as they are. */
void ChooseStep(const CBox& box, CGltfGeometry& geometry) {
    if (box.IsEmpty()) return;
    const auto extent = [](float low, float high) {
        return static_cast<double>(high) - static_cast<double>(low);
    };
    const double longest =
        std::max({extent(box.min.x, box.max.x), extent(box.min.y, box.max.y), extent(box.min.z, box.max.z)});
    if (!std::isfinite(longest)) return;
    geometry.offset = box.min;
    const auto step = static_cast<float>(longest / kLargestPosition);
    if (std::isnormal(step)) geometry.scale = step;
}

int Quantized(const CGltfGeometry& geometry, const CPreparedVertex& vertex, std::size_t axis) {
    const float low[3] = {geometry.offset.x, geometry.offset.y, geometry.offset.z};
    const double steps =
        (static_cast<double>(Sound(vertex.position[axis])) - static_cast<double>(low[axis])) /
        static_cast<double>(geometry.scale);
    return static_cast<int>(std::lround(std::clamp(steps, 0.0, 65535.0)));
}

void MakeQuantized(const CPreparedMesh& mesh, CGltfGeometry& geometry) {
    const std::size_t count = geometry.vertexCount;
    std::vector<std::uint16_t> positions(count * 4);
    std::vector<float> normals(count * 4), texCoords(mesh.texCoords.empty() ? 0 : count * 2);
    CBounds bounds;
    for (std::size_t v = 0; v < count; ++v) {
        const CPreparedVertex& vertex = mesh.vertices[geometry.order[v]];
        for (std::size_t i = 0; i < 3; ++i) {
            const int value = Quantized(geometry, vertex, i);
            positions[v * 4 + i] = static_cast<std::uint16_t>(value);
            bounds.Add(i, value);
        }
        const CVec3 normal = UnitNormal(vertex);
        normals[v * 4] = normal.x;
        normals[v * 4 + 1] = normal.y;
        normals[v * 4 + 2] = normal.z;
        if (texCoords.empty()) continue;
        const CVec2 uv = mesh.texCoords[geometry.order[v]];
        texCoords[v * 2] = Sound(uv.x);
        texCoords[v * 2 + 1] = Sound(1 - Sound(uv.y));
    }
    bounds.Give(geometry.min, geometry.max);
    geometry.positions = BytesOf(positions);
    geometry.normals.resize(count * 4);
    meshopt_encodeFilterOct(geometry.normals.data(), count, 4, CGltfGeometry::kNormalBits, normals.data());
    geometry.texCoords.resize(texCoords.size() * sizeof(float));
    if (!texCoords.empty())
        meshopt_encodeFilterExp(geometry.texCoords.data(), count, 8, CGltfGeometry::kTexCoordBits,
                                texCoords.data());
}

}  // namespace

CGltfGeometry CGltfGeometry::Make(const CPreparedMesh& mesh, std::span<const CGltfRange> ranges, bool packs,
                                  const CBox& box) {
    CGltfGeometry geometry;
    MakeIndices(mesh, ranges, packs, geometry);
    if (packs) {
        ChooseStep(box, geometry);
        MakeQuantized(mesh, geometry);
    } else {
        MakeFloats(mesh, geometry);
    }
    return geometry;
}

CGltfDeltas CGltfDeltas::Make(const CGltfGeometry& geometry, const CPreparedMesh& mesh,
                              std::span<const CPreparedVertex> shape, bool packs) {
    CGltfDeltas deltas;
    std::vector<std::int16_t> steps(packs ? std::size_t{geometry.vertexCount} * 4 : 0);
    std::vector<float> positions, normals;
    CBounds bounds;
    for (std::size_t v = 0; v < geometry.vertexCount; ++v) {
        const std::size_t from = geometry.order.empty() ? v : geometry.order[v];
        const CPreparedVertex &base = mesh.vertices[from], &other = shape[from];
        for (std::size_t i = 0; i < 3; ++i) {
            const float delta = Sound(Sound(other.position[i]) - Sound(base.position[i]));
            const int step = packs ? Quantized(geometry, other, i) - Quantized(geometry, base, i) : 0;
            bounds.Add(i, packs ? static_cast<double>(step) : static_cast<double>(delta));
            if (packs)
                steps[v * 4 + i] = static_cast<std::int16_t>(step);
            else
                positions.push_back(delta);
        }
        const CVec3 turn = UnitNormal(other) - UnitNormal(base);
        normals.insert(normals.end(), {turn.x, turn.y, turn.z});
    }
    bounds.Give(deltas.min, deltas.max);
    deltas.positions = packs ? BytesOf(steps) : BytesOf(positions);
    deltas.normals = BytesOf(normals);
    if (packs)
        meshopt_encodeFilterExp(deltas.normals.data(), geometry.vertexCount, 12, CGltfGeometry::kTexCoordBits,
                                normals.data());
    return deltas;
}
