// SPDX-License-Identifier: MIT
#include "export/gltf/CGltfMeshes.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <set>
#include <span>
#include <string_view>
#include <utility>

#include "base/CHashIndex.h"
#include "base/jobs/CJobProgress.h"
#include "base/jobs/parallel_for.h"
#include "base/name_hash.h"
#include "export/gltf/CGltfMaterials.h"
#include "export/gltf/glb/CGlbFile.h"
#include "export/gltf/glb/CJsonText.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/material_kinds.h"

namespace {

template <class T>
std::string_view BytesOf(const std::vector<T>& values) {
    return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T)};
}

std::uint64_t HashOf(const CPreparedMesh& mesh) {
    const CNameHash hash;
    return hash(BytesOf(mesh.vertices)) ^ hash(BytesOf(mesh.texCoords)) * 3 ^
           (hash(BytesOf(mesh.indices16)) ^ hash(BytesOf(mesh.indices32))) * 5;
}

std::vector<double> ListOf(const std::array<double, 3>& values) {
    return {values.begin(), values.end()};
}

}  // namespace

void CGltfMeshes::FindParts(const std::vector<bool>& used) {
    m_parts.resize(m_scene.meshes.size());
    for (std::size_t m = 0; m < m_parts.size(); ++m) {
        if (!used[m]) continue;
        for (const CPreparedBatch& batch : m_scene.meshes[m].batches) {
            if (batch.indexCount == 0 || IsInvisible(m_scene.materials[batch.material])) continue;
            m_parts[m].ranges.push_back({batch.firstIndex, batch.indexCount});
            m_parts[m].materials.push_back(batch.material);
        }
    }
}

bool CGltfMeshes::AreEqual(std::size_t one, std::size_t other) const {
    const CPreparedMesh &a = m_scene.meshes[one], &b = m_scene.meshes[other];
    if (m_morphs.contains(one) || m_morphs.contains(other)) return false;
    return m_parts[one].ranges == m_parts[other].ranges && BytesOf(a.vertices) == BytesOf(b.vertices) &&
           BytesOf(a.texCoords) == BytesOf(b.texCoords) && a.indices16 == b.indices16 &&
           a.indices32 == b.indices32;
}

std::vector<std::size_t> CGltfMeshes::FindEqual() {
    std::vector<std::uint64_t> hashes(m_parts.size());
    ParallelFor(m_parts.size(), 0, [&](std::size_t m) {
        if (!m_parts[m].ranges.empty()) hashes[m] = HashOf(m_scene.meshes[m]);
    });
    std::vector<std::size_t> firsts;
    CHashIndex known(m_parts.size());
    m_geometryOf.resize(m_parts.size());
    for (std::size_t m = 0; m < m_parts.size(); ++m) {
        if (m_parts[m].ranges.empty()) continue;
        const auto fresh = static_cast<std::uint32_t>(firsts.size());
        const std::uint32_t found =
            known.FindOrAdd(hashes[m], fresh, [&](std::uint32_t i) { return AreEqual(firsts[i], m); });
        if (found == fresh) firsts.push_back(m);
        m_geometryOf[m] = found;
    }
    return firsts;
}

const CPreparedMesh& CGltfMeshes::Source(std::size_t mesh) const {
    const auto morph = m_morphs.find(mesh);
    return morph == m_morphs.end() ? m_scene.meshes[mesh] : morph->second.base;
}

CGltfMeshes::CMade CGltfMeshes::Make(std::size_t mesh) const {
    const auto morph = m_morphs.find(mesh);
    const bool morphs = morph != m_morphs.end();
    const CBox& box = morphs ? morph->second.bounds : m_scene.meshes[mesh].bounds;
    CMade made{CGltfGeometry::Make(Source(mesh), m_parts[mesh].ranges, m_file.Packs(), box), {}};
    if (!morphs) return made;
    for (const std::vector<CPreparedVertex>& shape : morph->second.others)
        made.shapes.push_back(CGltfDeltas::Make(made.geometry, morph->second.base, shape, m_file.Packs()));
    return made;
}

std::vector<float> CGltfMeshes::WeightsOf(std::size_t mesh, const CMorphShape& shape) const {
    const auto morph = m_morphs.find(mesh);
    return morph == m_morphs.end() ? std::vector<float>() : morph->second.WeightsOf(shape);
}

CStatus CGltfMeshes::Add(const std::vector<bool>& used, CMorphs morphs, CJobProgress* progress) {
    constexpr std::size_t kAtOnce = 256;  // so that few are in memory a second time
    m_morphs = std::move(morphs);
    FindParts(used);
    const std::vector<std::size_t> firsts = FindEqual();
    for (std::size_t begin = 0; begin < firsts.size(); begin += kAtOnce) {
        std::vector<CMade> made(std::min(kAtOnce, firsts.size() - begin));
        ParallelFor(made.size(), 0, [&](std::size_t i) {
            if (NotCancelled(progress)) made[i] = Make(firsts[begin + i]);
        });
        if (CStatus status = NotCancelled(progress); !status) return status;
        for (const CMade& one : made) Append(one);
        if (progress)
            progress->SetShare(0.7 * static_cast<double>(begin + made.size()) /
                               static_cast<double>(firsts.size()));
    }
    NumberMeshes();
    return CDone{};
}

CGltfMeshes::CTarget CGltfMeshes::Append(const CGltfDeltas& shape, std::size_t count) {
    CTarget target;
    CGlbAccessor accessor;
    accessor.count = count;
    accessor.place = m_file.Append(EGlbStream::NormalDeltas, shape.normals);
    target.normals = m_file.AddAccessor(accessor);
    accessor.component = m_file.Packs() ? CGlbAccessor::kShort : CGlbAccessor::kFloat;
    accessor.place = m_file.Append(EGlbStream::PositionDeltas, shape.positions);
    accessor.min = ListOf(shape.min);
    accessor.max = ListOf(shape.max);
    target.positions = m_file.AddAccessor(accessor);
    return target;
}

void CGltfMeshes::Append(const CMade& made) {
    const CGltfGeometry& geometry = made.geometry;
    CWritten written{geometry.offset, geometry.scale, -1, -1, -1, {}, {}};
    const bool packs = m_file.Packs();
    CGlbAccessor accessor;
    accessor.count = geometry.vertexCount;
    accessor.place = m_file.Append(EGlbStream::Normals, geometry.normals);
    accessor.component = packs ? CGlbAccessor::kByte : CGlbAccessor::kFloat;
    accessor.normalized = packs;
    written.normals = m_file.AddAccessor(accessor);
    accessor.component = CGlbAccessor::kFloat;
    accessor.normalized = false;
    if (!geometry.texCoords.empty()) {
        accessor.type = "VEC2";
        accessor.place = m_file.Append(EGlbStream::TexCoords, geometry.texCoords);
        written.texCoords = m_file.AddAccessor(accessor);
    }
    accessor.type = "VEC3";
    accessor.component = packs ? CGlbAccessor::kUShort : CGlbAccessor::kFloat;
    accessor.place = m_file.Append(EGlbStream::Positions, geometry.positions);
    accessor.min = ListOf(geometry.min);
    accessor.max = ListOf(geometry.max);
    written.positions = m_file.AddAccessor(accessor);
    const bool wide = geometry.hasWideIndices;
    const CGlbPlace place =
        m_file.Append(wide ? EGlbStream::Indices32 : EGlbStream::Indices16, geometry.indices);
    for (const CGltfRange& range : geometry.ranges) {
        CGlbAccessor indices;
        indices.place = {place.view, place.offset + range.first * std::size_t{wide ? 4U : 2U}};
        indices.component = wide ? CGlbAccessor::kUInt : CGlbAccessor::kUShort;
        indices.type = "SCALAR";
        indices.count = range.count;
        written.indices.push_back(m_file.AddAccessor(indices));
    }
    for (const CGltfDeltas& shape : made.shapes)
        written.targets.push_back(Append(shape, geometry.vertexCount));
    m_written.push_back(std::move(written));
}

/** In the scene's order, by which readers of ours tell what is drawn first of surfaces in one place. */
void CGltfMeshes::NumberMaterials() {
    std::set<std::pair<std::uint32_t, bool>> used;
    for (std::size_t m = 0; m < m_parts.size(); ++m) {
        for (const std::uint32_t material : m_parts[m].materials)
            used.emplace(material, At(m).texCoords >= 0);
    }
    for (const auto& [material, hasTexCoords] : used) (void)m_materials.Use(material, hasTexCoords);
}

void CGltfMeshes::NumberMeshes() {
    NumberMaterials();
    m_numbers.assign(m_parts.size(), -1);
    for (std::size_t m = 0; m < m_parts.size(); ++m) {
        if (m_parts[m].ranges.empty()) continue;
        CMesh mesh;
        mesh.geometry = m_geometryOf[m];
        std::vector<int> key{static_cast<int>(mesh.geometry)};
        for (const std::uint32_t material : m_parts[m].materials) {
            mesh.materials.push_back(m_materials.Use(material, At(m).texCoords >= 0));
            mesh.isFlat.push_back(m_scene.materials[material].shading == EShading::Flat);
            key.push_back(mesh.materials.back());
        }
        const auto [place, isNew] = m_known.try_emplace(key, static_cast<int>(m_meshes.size()));
        m_numbers[m] = place->second;
        if (!isNew) continue;
        mesh.name = m_names.Take(m_scene.meshes[m].name);
        m_meshes.push_back(std::move(mesh));
    }
}

void CGltfMeshes::WriteTargets(CJsonText& json, const CWritten& written, bool isFlat) const {
    json.Key("targets").BeginArray();
    for (const CTarget& target : written.targets) {
        json.BeginObject().Member("POSITION", target.positions);
        if (!isFlat) json.Member("NORMAL", target.normals);
        json.EndObject();
    }
    json.EndArray();
}

void CGltfMeshes::Write(CJsonText& json) const {
    if (m_meshes.empty()) return;
    json.Key("meshes").BeginArray();
    for (const CMesh& mesh : m_meshes) {
        const CWritten& written = m_written[mesh.geometry];
        json.BeginObject();
        if (!mesh.name.empty()) json.Member("name", mesh.name);
        json.Key("primitives").BeginArray();
        for (std::size_t i = 0; i < mesh.materials.size(); ++i) {
            json.BeginObject().Key("attributes").BeginObject().Member("POSITION", written.positions);
            if (!mesh.isFlat[i]) json.Member("NORMAL", written.normals);
            if (written.texCoords >= 0) json.Member("TEXCOORD_0", written.texCoords);
            json.EndObject().Member("indices", written.indices[i]);
            json.Member("material", mesh.materials[i]);
            if (!written.targets.empty()) WriteTargets(json, written, mesh.isFlat[i]);
            json.EndObject();
        }
        json.EndArray().EndObject();
    }
    json.EndArray();
}
