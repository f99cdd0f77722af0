// SPDX-License-Identifier: MIT
#include "engine/meshes/CSceneMeshes.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "engine/meshes/CSortedBatches.h"
#include "engine/plan/CFrameBudget.h"
#include "model/prepare/material_kinds.h"

namespace {

CPreparedMesh UnitBox() {
    CPreparedMesh box;
    for (std::uint16_t face = 0; face < 6; ++face) {
        const unsigned axis = face / 2u;
        const float side = face % 2 == 0 ? -1.0f : 1.0f;
        for (unsigned corner = 0; corner < 4; ++corner) {
            const float u = (corner & 1u) ? 1.0f : -1.0f, v = (corner & 2u) ? 1.0f : -1.0f;
            CPreparedVertex vertex{};
            vertex.position[axis] = side;
            vertex.position[(axis + 1) % 3] = u * side;
            vertex.position[(axis + 2) % 3] = v;
            vertex.normal[axis] = static_cast<std::int16_t>(32767 * static_cast<int>(side));
            box.vertices.push_back(vertex);
            box.texCoords.push_back({(u + 1) / 2, (v + 1) / 2});
        }
        for (const unsigned corner : {0u, 1u, 3u, 0u, 3u, 2u})
            box.indices16.push_back(static_cast<std::uint16_t>(face * 4u + corner));
    }
    box.batches.push_back({0, 0, 36});
    return box;
}

/** What a triangle of a batch costs to draw, in plain triangles. */
float CostOfTriangle(const CPreparedMaterial& material, const CPreparedBatch& batch) {
    constexpr float kSorting = 1.2f;
    if (!IsBlended(material)) return 1;
    const float solid = MayBeSolid(material) ? 1.0f : 0.0f;
    if (!material.additive && CSortedBatches::Sorts(batch)) return solid + 1 + kSorting;
    return solid + (material.twoSided ? 2.0f : 1.0f);
}

float CostOf(const CPreparedScene& scene, const std::vector<CPreparedBatch>& batches) {
    float sum = 0;
    for (const CPreparedBatch& batch : batches) {
        const CPreparedMaterial& material = scene.materials[batch.material];
        if (batch.indexCount == 0 || IsInvisible(material)) continue;
        const std::uint32_t triangles = batch.indexCount / 3;
        sum += CostOfTriangle(material, batch) * static_cast<float>(triangles) +
               static_cast<float>(CFrameBudget::kCallCost);
    }
    return sum;
}

/** Twice the area of a batch, from samples of its triangles. */
float TwiceAreaOf(const CPreparedMesh& mesh, const CPreparedBatch& batch) {
    constexpr std::uint32_t kSamples = 256;
    const std::uint32_t triangles = batch.indexCount / 3, step = triangles / kSamples + 1;
    float sum = 0;
    for (std::uint32_t t = 0; t < triangles; t += step) {
        const auto corner = [&](std::uint32_t c) {
            return mesh.vertices[mesh.Index(batch.firstIndex + 3 * t + c)].Position();
        };
        sum += Length(Cross(corner(1) - corner(0), corner(2) - corner(0)));
    }
    return sum * static_cast<float>(step);
}

std::vector<float> LayersOf(const CPreparedMesh& mesh) {
    const CVec3 size = mesh.bounds.max - mesh.bounds.min;
    const float box = size.x * size.y + size.y * size.z + size.z * size.x;
    std::vector<float> layers;
    for (const CPreparedBatch& batch : mesh.batches) {
        const float covered = TwiceAreaOf(mesh, batch) / (2 * box);
        layers.push_back(std::isfinite(covered) ? covered : 1);
    }
    return layers;
}

/** Few where a drawing has many batches, so that to measure a picture takes milliseconds. */
std::uint32_t SamplesOfABatch(const CPreparedScene& scene) {
    constexpr std::size_t kAll = 262'144, kLeast = 4, kMost = 64;
    std::size_t batches = 1;
    for (const CPreparedNode& node : scene.nodes) {
        if (node.mesh >= 0) batches += scene.meshes[static_cast<std::size_t>(node.mesh)].batches.size();
    }
    return static_cast<std::uint32_t>(std::clamp(kAll / batches, kLeast, kMost));
}

bool IsGivenBack(const CPreparedMesh& mesh) {
    return mesh.vertices.empty() && !mesh.batches.empty();
}

}  // namespace

CMat4 BoxPlacement(const CBox& bounds) {
    const CVec3 half = (bounds.max - bounds.min) * 0.5f;
    // A box without height has no normals; this one is as good as flat.
    const float least = std::max({half.x, half.y, half.z}) * 1e-3f + 1e-30f;
    return CMat4::Translation(bounds.Center()) *
           CMat4::Scale({std::max(half.x, least), std::max(half.y, least), std::max(half.z, least)});
}

void CSceneMeshes::Clear() {
    m_meshes.clear();
}

bool CSceneMeshes::Update(CGlCurrent& gl, const CPreparedScene& scene, EArrays arrays) {
    m_mostSamples = SamplesOfABatch(scene);
    if (m_box.Bytes() == 0) m_box.Upload(gl, UnitBox());
    std::vector<CEntry> before = std::move(m_meshes);
    bool changed = before.size() != scene.meshes.size();
    m_meshes.clear();
    m_meshes.resize(scene.meshes.size());
    for (std::size_t i = 0; i < m_meshes.size(); ++i) {
        changed = Take(gl, scene.meshes[i], before, i, arrays) || changed;
        Measure(m_meshes[i], scene, scene.meshes[i]);
    }
    return changed;
}

/** Takes over the buffers of a mesh from before, or uploads it. True when it is not the same as before. */
bool CSceneMeshes::Take(CGlCurrent& gl, const CPreparedMesh& mesh, std::vector<CEntry>& before,
                        std::size_t place, EArrays arrays) {
    const auto holds = [&](const CEntry& entry) { return entry.buffers.HoldsVerticesOf(mesh); };
    // Meshes mostly keep their place, so that is where to look first.
    const bool isInPlace = place < before.size() && (IsGivenBack(mesh) || holds(before[place]));
    const auto found = isInPlace ? before.begin() + static_cast<std::ptrdiff_t>(place)
                                 : std::find_if(before.begin(), before.end(), holds);
    bool changed = !isInPlace;
    CEntry& entry = m_meshes[place];
    if (found != before.end()) {
        entry = std::move(*found);
        *found = {};
        if (!IsGivenBack(mesh) && entry.buffers.RefreshIndices(gl, mesh)) {
            changed = true;
            DropLevels(entry);
            MeasureSurface(entry, mesh);
        }
    } else if (!mesh.vertices.empty() && mesh.IndexCount() > 0) {
        entry.buffers.Upload(gl, mesh, arrays);
        MeasureSurface(entry, mesh);
    }
    return changed;
}

void CSceneMeshes::MeasureSurface(CEntry& entry, const CPreparedMesh& mesh) {
    entry.layers = LayersOf(mesh);
    entry.sample.reset();
}

const CMeshSample& CSceneMeshes::Sample(const CPreparedScene& scene, std::size_t mesh) {
    static const CMeshSample none;
    std::optional<CMeshSample>& sample = m_meshes[mesh].sample;
    if (sample) return *sample;
    if (IsGivenBack(scene.meshes[mesh])) return none;
    return sample.emplace(scene.meshes[mesh], m_mostSamples);
}

void CSceneMeshes::DropLevels(CEntry& entry) {
    entry.levels.clear();
    entry.grains.clear();
    entry.levelsSet = false;
}

void CSceneMeshes::Measure(CEntry& entry, const CPreparedScene& scene, const CPreparedMesh& mesh) {
    entry.forms.clear();
    entry.forms.push_back({0, CostOf(scene, mesh.batches)});
    for (CLevelBuffers& level : entry.levels) {
        // An edit may have given a batch another material.
        for (std::size_t b = 0; b < mesh.batches.size(); ++b)
            level.level.batches[b].material = mesh.batches[b].material;
        entry.forms.push_back({level.level.error, CostOf(scene, level.level.batches)});
    }
}

void CSceneMeshes::SetLevels(CGlCurrent& gl, const CPreparedScene& scene, std::size_t mesh,
                             CMeshLevels levels) {
    CEntry& entry = m_meshes[mesh];
    const std::vector<CPreparedBatch>& batches = scene.meshes[mesh].batches;
    const bool sorts = std::any_of(batches.begin(), batches.end(), [&](const CPreparedBatch& batch) {
        return scene.materials[batch.material].needsBlending;
    });
    DropLevels(entry);
    entry.levelsSet = true;
    entry.grains = std::move(levels.grains);
    for (CMeshLevel& level : levels.levels)
        entry.levels.push_back(CLevelBuffers::Upload(gl, std::move(level), sorts));
    Measure(entry, scene, scene.meshes[mesh]);
}

CShape CSceneMeshes::Shape(const CPreparedScene& scene, std::size_t mesh, int level) const {
    const CEntry& entry = m_meshes[mesh];
    const CPreparedMesh& source = scene.meshes[mesh];
    if (level == kBoxLevel) return {&m_box, nullptr, nullptr, {}};
    if (level == kFullLevel)
        return {
            &entry.buffers, nullptr, &source.batches, {source.vertices, source.indices16, source.indices32}};
    const CLevelBuffers& buffers = entry.levels[static_cast<std::size_t>(level - 1)];
    const CMeshLevel& arrays = buffers.level;
    if (buffers.HasOwnVertices())
        return {
            &buffers.own, nullptr, &arrays.batches, {arrays.vertices, arrays.indices16, arrays.indices32}};
    return {&entry.buffers,
            &buffers.indices,
            &arrays.batches,
            {source.vertices, arrays.indices16, arrays.indices32}};
}

double CSceneMeshes::CostInFull(const CPreparedScene& scene) const {
    double sum = 0;
    for (const CPreparedNode& node : scene.nodes) {
        if (node.visible && node.mesh >= 0 && static_cast<std::size_t>(node.mesh) < m_meshes.size())
            sum += static_cast<double>(m_meshes[static_cast<std::size_t>(node.mesh)].forms.front().cost);
    }
    return sum;
}

float CSceneMeshes::Grain(std::size_t mesh, int level, std::size_t batch) const {
    constexpr float kUnknown = 1e30f;
    if (level == kBoxLevel) return kUnknown;
    const CEntry& entry = m_meshes[mesh];
    const std::vector<float>& grains =
        level == kFullLevel ? entry.grains : entry.levels[static_cast<std::size_t>(level - 1)].level.grains;
    return batch < grains.size() ? grains[batch] : kUnknown;
}

std::size_t CSceneMeshes::Bytes() const {
    std::size_t sum = 0;
    for (const CEntry& entry : m_meshes) {
        sum += entry.buffers.Bytes();
        for (const CLevelBuffers& level : entry.levels) sum += level.Bytes();
    }
    return sum;
}
