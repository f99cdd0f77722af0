// SPDX-License-Identifier: MIT
#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <algorithm>
#include <filesystem>

#include "base/text/lng.h"
#include "model/edit/CSceneEdits.h"
#include "model/edit/material_edits.h"
#include "model/prepare/CPreparedScene.h"
#include "model/scene/lib3ds_copies.h"
#include "model/scene/lib3ds_name.h"
#include "model/textures/CLib3dsMatUtil.h"
#include "model/textures/texture_name.h"

namespace {

/** Endings do not count: saving gives all pictures the same one. */
bool SceneNames(const CScene& scene, std::string_view name) {
    for (Lib3dsMaterial* m = scene.Header()->materials; m != nullptr; m = m->next) {
        for (const Lib3dsTextureMap* map : CLib3dsMatUtil::MapsOf(*m)) {
            if (map->name[0] != '\0' && texture_name::SameButForEnding(CTextureQuery(map->name).base, name))
                return true;
        }
    }
    return false;
}

bool SameFile(const std::string& a, const std::string& b) {
    std::error_code ignored;  // an archive entry is no file, and not the same as one
    return std::filesystem::equivalent(a, b, ignored);
}

}  // namespace

std::string CSceneEdits::AddPicture(const CPictureShelf::CPicture& picture) {
    const auto isHere = [&](const std::string& name) {
        const auto hit = m_scene.Textures().Find(name);
        return hit && hit->data != nullptr && (hit->data == &picture->data || *hit->data == picture->data);
    };
    if (isHere(picture->name)) return picture->name;
    std::string name = material_edits::TextureName(picture->name, 1);
    for (unsigned n = 2; SceneNames(m_scene, name) || m_scene.Textures().Find(name); ++n) {
        name = material_edits::TextureName(picture->name, n);
    }
    CTextureLocator textures = m_scene.Textures();
    textures.Add(m_shelf.Rename(picture, name));
    m_edited.SetTextures(std::move(textures));
    return name;
}

CResult<std::string> CSceneEdits::AddPictureFile(const std::string& path) {
    const std::string name = material_edits::TextureName(std::filesystem::path(path).filename().native(), 1);
    const auto known = m_scene.Textures().Find(name);
    if (known && known->data == nullptr && SameFile(known->foundAt, path)) return name;
    const CResult<CPictureShelf::CPicture> read = m_shelf.Read(path);
    if (!read) return read.Error();
    return AddPicture(read.Value());
}

CStatus CSceneEdits::Do(const CTextureEdit& edit) {
    const auto materials = Targets(edit.target);
    if (!materials) return materials.Error();
    std::string name;
    int texture = -1;
    if (!edit.imagePath.empty()) {
        const CResult<std::string> added = AddPictureFile(edit.imagePath);
        if (!added) return added.Error();
        name = added.Value();
        texture = m_edited.TextureOf(name);
        if (m_prepared.textures[static_cast<std::size_t>(texture)].image.IsEmpty())
            return CError{EErrorCode::BadFormat, lng::Mark("the picture cannot be read"), edit.imagePath};
    }
    for (const std::uint32_t material : materials.Value()) {
        m_edited.ChangeMaterial(
            material, [&](Lib3dsMaterial& m) { material_edits::SetTexture(m, name); }, texture);
        if (texture < 0) continue;
        for (std::size_t mesh = 0; mesh < m_prepared.meshes.size(); ++mesh) {
            const auto& batches = m_prepared.meshes[mesh].batches;
            if (std::any_of(batches.begin(), batches.end(),
                            [&](const auto& b) { return b.material == material; }))
                m_edited.AddTexCoords(mesh);
        }
    }
    return CDone{};
}

void CSceneEdits::AdoptPictures(const CScene& from, Lib3dsMaterial& material) {
    for (Lib3dsTextureMap* map : CLib3dsMatUtil::MapsOf(material)) {
        auto& name = map->name;
        if (name[0] == '\0') continue;
        const auto hit = from.Textures().Find(name);
        if (!hit) continue;
        const auto known = m_scene.Textures().Find(name);
        if (known && hit->data == nullptr && known->data == nullptr && SameFile(known->foundAt, hit->foundAt))
            continue;
        const std::string base = material_edits::TextureName(CTextureQuery(name).base, 1);
        CPictureShelf::CPicture picture;
        if (hit->data != nullptr) {
            picture = m_shelf.Add({base, *hit->data});
        } else if (auto read = m_shelf.Read(hit->foundAt)) {
            picture = std::move(read).Value();
        }
        if (picture) CopyName(name, AddPicture(picture));
    }
}
