// SPDX-License-Identifier: MIT
#include "model/read_3ds/mesh_array_views.h"

#include <lib3ds/mesh.h>

#include <algorithm>

#include "model/scene/lib3ds_list.h"
#include "model/scene/lib3ds_name.h"
#include "model/scene/mesh_access.h"
#include "model/scene/mesh_arrays.h"

namespace {
/** The array itself, or a copy filled up with zeros when it has fewer entries than wanted. */
const std::byte* AtLeast(std::span<const std::byte> bytes, CArraySpan array, std::size_t entrySize,
                         std::size_t wanted, std::vector<std::vector<std::byte>>& patches) {
    if (array.count >= wanted) return bytes.data() + array.offset;
    std::vector<std::byte>& patch = patches.emplace_back(wanted * entrySize);
    std::copy_n(bytes.data() + array.offset, array.count * entrySize, patch.data());
    return patch.data();
}

void AssignMaterials(std::span<const std::byte> bytes, const CMeshChunk& chunk,
                     const CMaterialIndex& materials, CMeshView& view, CNoteList& notes) {
    if (chunk.groups.empty()) return;
    view.faceMaterials.assign(view.faceCount, CMeshView::kNoMaterial);
    for (const CMaterialGroup& group : chunk.groups) {
        const std::uint16_t material = materials.Find(group.material);
        if (material == CMeshView::kNoMaterial && group.faces.count > 0) {
            notes.Missing("Material not found", CNoteList::Printable(group.material));
        }
        bool outOfRange = false;
        for (std::size_t i = 0; i < group.faces.count; ++i) {
            std::uint16_t face;
            std::memcpy(&face, bytes.data() + group.faces.offset + i * 2, 2);
            if (face < view.faceCount)
                view.faceMaterials[face] = material;
            else
                outOfRange = true;
        }
        if (outOfRange) notes.Repaired("A material group names faces that are not there");
    }
}
}  // namespace

CMeshView ViewOfChunk(std::span<std::byte> bytes, const CMeshChunk& chunk, Lib3dsMesh& mesh,
                      const CMaterialIndex& materials, std::vector<std::vector<std::byte>>& patches,
                      CNoteList& notes) {
    CMeshView view;
    view.mesh = &mesh;
    view.matrix = CMat4::FromLib3ds(mesh.matrix);
    view.pointsUnflipped = true;
    view.points = bytes.data() + chunk.points.offset;
    view.pointStride = 12;
    view.pointCount = chunk.points.count;
    if (chunk.texels.count > 0 && view.pointCount > 0) {
        if (chunk.texels.count < view.pointCount)
            notes.Repaired("A mesh has fewer texture coordinates than vertices");
        view.texels = AtLeast(bytes, chunk.texels, 8, view.pointCount, patches);
        view.texelStride = 8;
        view.texelCount = view.pointCount;
    }
    view.faces = bytes.data() + chunk.faces.offset;
    view.faceStride = 8;
    view.faceCount = chunk.faces.count;
    if (chunk.smoothing.count > 0) {
        if (chunk.smoothing.count < view.faceCount)
            notes.Repaired("A mesh has fewer smoothing groups than faces");
        view.smoothing = AtLeast(bytes, chunk.smoothing, 4, view.faceCount, patches);
        view.smoothingStride = 4;
    }
    AssignMaterials(bytes, chunk, materials, view, notes);
    RepairMeshArrays(view, notes);
    return view;
}

void FillMeshMapping(const CMeshChunk& chunk, Lib3dsMesh& mesh) {
    if (chunk.boxMap.size() == 6) {
        CopyName(mesh.box_map.front, chunk.boxMap[0]);
        CopyName(mesh.box_map.back, chunk.boxMap[1]);
        CopyName(mesh.box_map.left, chunk.boxMap[2]);
        CopyName(mesh.box_map.right, chunk.boxMap[3]);
        CopyName(mesh.box_map.top, chunk.boxMap[4]);
        CopyName(mesh.box_map.bottom, chunk.boxMap[5]);
    }
    if (!chunk.hasMapping) return;
    const float* values = chunk.mapping;
    Lib3dsMapData& data = mesh.map_data;
    data.maptype = chunk.mapType;
    std::copy_n(values, 2, data.tile);
    std::copy_n(values + 2, 3, data.pos);
    data.scale = values[5];
    for (std::size_t row = 0; row < 4; ++row) std::copy_n(values + 6 + row * 3, 3, data.matrix[row]);
    std::copy_n(values + 18, 2, data.planar_size);
    data.cylinder_height = values[20];
}

void FillPointFlags(std::span<const std::byte> bytes, const CMeshChunk& chunk, Lib3dsMesh& mesh) {
    const std::size_t count = std::min(chunk.pointFlags.count, chunk.points.count);
    if (count == 0 || !lib3ds_mesh_new_flag_list(&mesh, static_cast<Lib3dsDword>(chunk.points.count))) return;
    std::fill_n(mesh.flagL, mesh.flags, Lib3dsWord{0});
    std::memcpy(mesh.flagL, bytes.data() + chunk.pointFlags.offset, count * 2);
}
