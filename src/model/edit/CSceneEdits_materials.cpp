// SPDX-License-Identifier: MIT
#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>
#include <lib3ds/node.h>

#include <algorithm>
#include <set>

#include "base/text/lng.h"
#include "model/edit/CSceneEdits.h"
#include "model/edit/material_edits.h"
#include "model/scene/CScene.h"
#include "model/scene/lib3ds_copies.h"
#include "model/scene/lib3ds_name.h"

namespace {

std::set<std::string> MaterialsOf(const Lib3dsMesh& mesh) {
    std::set<std::string> names;
    for (Lib3dsDword i = 0; i < mesh.faces; ++i) {
        // Faces of one material mostly follow each other.
        if (i == 0 || std::string_view(mesh.faceL[i].material) != mesh.faceL[i - 1].material) {
            names.insert(mesh.faceL[i].material);
        }
    }
    return names;
}

void RenameInFaces(Lib3dsMesh& mesh, const std::string& from, const char* to) {
    for (Lib3dsDword i = 0; i < mesh.faces; ++i) {
        if (from == mesh.faceL[i].material) CopyName(mesh.faceL[i].material, to);
    }
}

}  // namespace

bool CSceneEdits::Answers(std::string_view material, std::string_view asked) const {
    if (material == asked) return true;
    const auto origin = m_materialOrigin.find(material);
    return origin != m_materialOrigin.end() && origin->second == asked;
}

bool CSceneEdits::OwnMesh(CTarget& target) {
    if (!IsShared(target.mesh)) return true;
    Lib3dsFile* file = m_scene.Header();
    Lib3dsMesh* copy =
        lib3ds_copies::CopyMesh(*target.mesh, lib3ds_copies::UnusedMeshName(*file, target.mesh->name));
    if (copy == nullptr) return false;
    lib3ds_file_insert_mesh(file, copy);
    CopyName(target.node->name, copy->name);
    target.mesh = copy;
    return true;
}

Lib3dsMaterial* CSceneEdits::OwnMaterial(Lib3dsMesh& mesh, const std::string& name) {
    Lib3dsFile* file = m_scene.Header();
    Lib3dsMaterial* material = name.empty() ? nullptr : lib3ds_file_material_by_name(file, name.c_str());
    if (material != nullptr && !lib3ds_copies::UsedByOtherMeshes(*file, mesh, name)) return material;
    Lib3dsMaterial* own = nullptr;
    if (material != nullptr) {
        own = lib3ds_copies::CopyMaterial(*material, lib3ds_copies::UnusedMaterialName(*file, name));
    } else if ((own = lib3ds_material_new()) != nullptr) {
        const std::string_view base = name.empty() ? "Default" : std::string_view(name);
        CopyName(own->name, lib3ds_copies::UnusedMaterialName(*file, base));
    }
    if (own == nullptr) return nullptr;
    const auto origin = m_materialOrigin.find(name);
    const std::string asked = origin == m_materialOrigin.end() ? name : origin->second;
    m_materialOrigin[own->name] = asked;
    lib3ds_file_insert_material(file, own);
    RenameInFaces(mesh, name, own->name);
    return own;
}

CStatus CSceneEdits::ChangeNodeMaterial(std::string_view node, std::string_view material,
                                        const CMaterialChange& change) {
    CTarget* target = Find(node);
    if (target == nullptr || target->mesh == nullptr) {
        return CError{EErrorCode::NotFound, lng::Mark("the scene has no such object"), std::string(node)};
    }
    (void)m_scene.File();  // completes the mesh's arrays
    std::set<std::string> names = MaterialsOf(*target->mesh);
    if (!material.empty()) std::erase_if(names, [&](const std::string& n) { return !Answers(n, material); });
    if (names.empty()) {
        return CError{EErrorCode::NotFound, lng::Mark("the object has no such material"),
                      std::string(material)};
    }
    if (!OwnMesh(*target))
        return CError{EErrorCode::TooLarge, lng::Mark("not enough memory for the edit"), std::string(node)};
    bool complete = true;
    for (const std::string& name : names) {
        if (Lib3dsMaterial* own = OwnMaterial(*target->mesh, name)) {
            change(*own);
        } else {
            complete = false;
        }
    }
    Changed();
    if (!complete)
        return CError{EErrorCode::TooLarge, lng::Mark("not enough memory for the edit"), std::string(node)};
    return CDone{};
}

CStatus CSceneEdits::ChangeMaterial(std::string_view material, const CMaterialChange& change) {
    bool found = false;
    for (Lib3dsMaterial* m = m_scene.Header()->materials; m != nullptr; m = m->next) {
        if (material.empty() || !Answers(m->name, material)) continue;
        change(*m);
        found = true;
    }
    if (!found)
        return CError{EErrorCode::NotFound, lng::Mark("the scene has no such material"),
                      std::string(material)};
    m_needsPreparing = true;
    return CDone{};
}

void CSceneEdits::TakeMaterials(CScene& from, Lib3dsMesh& mesh) {
    Lib3dsFile* file = m_scene.Header();
    for (const std::string& name : MaterialsOf(mesh)) {
        const Lib3dsMaterial* theirs =
            name.empty() ? nullptr : lib3ds_file_material_by_name(from.Header(), name.c_str());
        if (theirs == nullptr) {
            RenameInFaces(mesh, name, "");
            continue;
        }
        Lib3dsMaterial* copy =
            lib3ds_copies::CopyMaterial(*theirs, lib3ds_copies::UnusedMaterialName(*file, name));
        if (copy == nullptr) continue;
        material_edits::AdoptTextures(m_scene, from, *copy);
        const Lib3dsMaterial* ours = lib3ds_file_material_by_name(file, name.c_str());
        if (ours != nullptr && lib3ds_copies::SameLook(*ours, *copy)) {
            lib3ds_material_free(copy);
            continue;
        }
        lib3ds_file_insert_material(file, copy);
        RenameInFaces(mesh, name, copy->name);
    }
}
