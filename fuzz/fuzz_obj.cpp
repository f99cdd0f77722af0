// SPDX-License-Identifier: MIT
// Whatever the texts of an OBJ file and its materials are: a scene whose indices are all valid, or an error.
// The input is the OBJ text, then a line of a zero byte, then the MTL text.
#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "model/read_obj/CObjConv3ds.h"

namespace {

void Check(bool holds) {
    if (!holds) std::abort();
}

void CheckMesh(const Lib3dsMesh& mesh) {
    Check(mesh.points > 0 && mesh.points <= 0xFFFF && mesh.faces > 0 && mesh.faces <= 0xFFFF);
    Check(mesh.texels == 0 || mesh.texels == mesh.points);
    for (Lib3dsDword i = 0; i < mesh.points; ++i) {
        for (const float x : mesh.pointL[i].pos) Check(std::isfinite(x));
    }
    for (Lib3dsDword i = 0; i < mesh.faces; ++i) {
        for (const Lib3dsWord point : mesh.faceL[i].points) Check(point < mesh.points);
        Check(mesh.faceL[i].material[0] != 0);
    }
}

void CheckMaterial(const Lib3dsMaterial& m) {
    for (const float* rgb : {m.ambient, m.diffuse, m.specular}) {
        for (const float x : {rgb[0], rgb[1], rgb[2], m.shininess, m.transparency, m.self_ilpct})
            Check(x >= 0 && x <= 1);
    }
    for (const auto* map : {&m.texture1_map, &m.bump_map, &m.opacity_map})
        Check(std::isfinite(map->scale[0] + map->scale[1] + map->offset[0] + map->offset[1]));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    constexpr std::string_view kBorder("\n\0\n", 3);
    const std::size_t border = input.find(kBorder);
    const std::string_view obj = input.substr(0, border);
    const std::string_view mtl =
        border == std::string_view::npos ? std::string_view() : input.substr(border + kBorder.size());
    std::vector<CSceneNote> notes;
    const CResult<CLib3dsFilePtr> file = CObjConv3ds::ConvertText(obj, mtl, notes);
    if (!file) return 0;
    for (const Lib3dsMesh* mesh = file.Value()->meshes; mesh; mesh = mesh->next) CheckMesh(*mesh);
    for (const Lib3dsMaterial* material = file.Value()->materials; material; material = material->next)
        CheckMaterial(*material);
    return 0;
}
