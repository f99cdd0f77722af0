// SPDX-License-Identifier: MIT
#include "model/edit/CEditedScene.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "model/edit/CPictureShelf.h"
#include "model/edit/material_edits.h"
#include "model/prepare/load_textures.h"
#include "model/prepare/prepare_materials.h"
#include "model/prepare/prepare_mesh.h"
#include "model/prepare/prepare_scene.h"
#include "model/scene/lib3ds_copies.h"
#include "model/scene/lib3ds_list.h"
#include "model/scene/scene_budget.h"
#include "model/scene/unique_names.h"

namespace {

struct CMaterialDeleter {
    void operator()(Lib3dsMaterial* material) const { lib3ds_material_free(material); }
};
using CMaterialPtr = std::unique_ptr<Lib3dsMaterial, CMaterialDeleter>;

CMaterialPtr Made(Lib3dsMaterial* material) {
    if (material == nullptr) throw std::bad_alloc();
    return CMaterialPtr(material);
}

}  // namespace

CEditedScene::CEditedScene(CScene& scene, CPreparedScene& prepared, CPictureShelf& shelf)
    : m_scene(scene), m_prepared(prepared), m_shelf(shelf) {
    for (Lib3dsMaterial* material : ListOf(scene.Header()->materials)) {
        m_materials.push_back({material, material->name, material_edits::AmbientShare(*material)});
        m_materialNames.Add(material->name);
    }
    for (const CPreparedMesh& mesh : prepared.meshes) m_meshNames.Add(mesh.name);
    m_materialNames.Add("");
    m_meshNames.Add("");
}

void CEditedScene::UndoTo(std::size_t count) {
    while (m_undo.size() > count) {
        m_undo.back()();
        m_undo.pop_back();
    }
}

void CEditedScene::Finish() {
    if (!std::exchange(m_placesChanged, false)) return;
    FindFrames(m_scene, m_prepared);
    CountParts(m_scene, m_prepared);
    EvaluateNodes(m_prepared, m_scene, m_prepared.currentFrame);
}

// --- materials -------------------------------------------------------------------------------------------

std::uint32_t CEditedScene::NoMaterial() const {
    return static_cast<std::uint32_t>(m_materials.size());
}

const Lib3dsMaterial* CEditedScene::Material(std::uint32_t index) const {
    return index < m_materials.size() ? m_materials[index].file : nullptr;
}

const std::string& CEditedScene::NameInFile(std::uint32_t index) const {
    static const std::string none;
    return index < m_materials.size() ? m_materials[index].nameInFile : none;
}

void CEditedScene::DecideLook(CPreparedMaterial& look) {
    (void)ReplaceBlackWithoutPicture(m_prepared.textures, look);  // the note is for what the file says
    DecideBlending(m_prepared.textures, look);
}

void CEditedScene::ChangeMaterial(std::uint32_t index, const CMaterialChange& change) {
    ChangeMaterial(index, change, m_prepared.materials[index].texture.texture);
}

void CEditedScene::ChangeMaterial(std::uint32_t index, const CMaterialChange& change, int texture) {
    Lib3dsMaterial& file = *m_materials[index].file;
    CPreparedMaterial& look = m_prepared.materials[index];
    m_undo.emplace_back([this, index, before = file, lookBefore = look] {
        Lib3dsMaterial& changed = *m_materials[index].file;
        Lib3dsMaterial* next = changed.next;
        changed = before;
        changed.next = next;
        m_prepared.materials[index] = lookBefore;
    });
    change(file);
    SetMaterialValues(file, look);
    look.texture.texture = texture;
    DecideLook(look);
}

void CEditedScene::RenumberNoMaterial(std::uint32_t from, std::uint32_t to) {
    for (CPreparedMesh& mesh : m_prepared.meshes) {
        for (CPreparedBatch& batch : mesh.batches)
            batch.material = batch.material == from ? to : batch.material;
    }
}

std::uint32_t CEditedScene::AddMaterial(const Lib3dsMaterial& values, CPreparedMaterial look,
                                        const std::string& nameInFile) {
    const std::uint32_t index = NoMaterial();
    if (index + 1 >= CMeshView::kNoMaterial) throw std::bad_alloc();
    const std::string base = nameInFile.empty() ? "Default" : nameInFile;
    look.name = m_materialNames.Take(base);
    CMaterialPtr owned = Made(lib3ds_copies::CopyMaterial(values, look.name));
    DecideLook(look);
    const std::string name = look.name;
    m_materials.push_back({owned.get(), nameInFile, material_edits::AmbientShare(values)});
    m_prepared.materials.insert(m_prepared.materials.end() - 1, std::move(look));
    RenumberNoMaterial(index, index + 1);
    m_scene.AddMaterial(owned.release());
    m_undo.emplace_back([this, index, name] {
        m_scene.DropLastMaterial();
        m_materials.pop_back();
        m_prepared.materials.erase(m_prepared.materials.begin() + index);
        RenumberNoMaterial(index + 1, index);
        m_materialNames.Release(name);
    });
    return index;
}

std::uint32_t CEditedScene::CopyMaterial(std::uint32_t index) {
    CPreparedMaterial look = m_prepared.materials[index];
    if (const Lib3dsMaterial* material = Material(index)) {
        const std::uint32_t copy = AddMaterial(*material, look, NameInFile(index));
        m_materials[copy].ambientShare = m_materials[index].ambientShare;
        return copy;
    }
    const CMaterialPtr made = Made(lib3ds_material_new());
    made->two_sided = look.twoSided ? 1 : 0;
    SetMaterialValues(*made, look);
    return AddMaterial(*made, look, {});
}

std::uint16_t CEditedScene::FaceMaterial(std::uint32_t index) const {
    return index < m_materials.size() ? static_cast<std::uint16_t>(index) : CMeshView::kNoMaterial;
}

void CEditedScene::UseMaterial(std::size_t mesh, std::uint32_t from, std::uint32_t to) {
    const auto use = [this, mesh](std::uint32_t old, std::uint32_t now) {
        for (CPreparedBatch& batch : m_prepared.meshes[mesh].batches) {
            if (batch.material == old) batch.material = now;
        }
        m_scene.ChangeFaceMaterial(mesh, FaceMaterial(old), FaceMaterial(now));
    };
    m_undo.emplace_back([use, from, to] { use(to, from); });
    use(from, to);
}

// --- pictures --------------------------------------------------------------------------------------------

void CEditedScene::SetTextures(CTextureLocator textures) {
    m_undo.emplace_back([this, before = m_scene.Textures()] { m_scene.SetTextures(before); });
    m_scene.SetTextures(std::move(textures));
}

/** An edit's picture may always have some room, as the user chose it. */
std::uint64_t CEditedScene::PictureBytesLeft() const {
    constexpr std::uint64_t kLeast = scene_budget::kPictureBytes / 8;
    std::uint64_t used = 0;
    for (const CPreparedTexture& texture : m_prepared.textures) used += texture.image.rgba.size();
    return std::max(kLeast, scene_budget::kPictureBytes - std::min(used, scene_budget::kPictureBytes));
}

int CEditedScene::TextureOf(const std::string& reference) {
    std::vector<CPreparedTexture>& textures = m_prepared.textures;
    const std::optional<CTextureHit> hit = m_scene.Textures().Find(reference);
    const auto isIt = [&](const CPreparedTexture& texture) {
        if (texture.reference == reference) return true;
        return hit && hit->data == nullptr && texture.foundAt == hit->foundAt;
    };
    const auto known = std::find_if(textures.begin(), textures.end(), isIt);
    if (known != textures.end()) return static_cast<int>(known - textures.begin());
    CPreparedTexture texture = m_shelf.Take(hit);
    texture.reference = reference;
    const std::size_t notes = m_prepared.notes.size();
    if (texture.image.IsEmpty()) {
        if (auto problem = LoadTexture(m_scene.Textures(), PictureBytesLeft(), texture))
            m_prepared.notes.push_back(std::move(*problem));
    }
    textures.push_back(std::move(texture));
    m_undo.emplace_back([this, hit, notes] {
        m_shelf.Keep(hit, std::move(m_prepared.textures.back()));
        m_prepared.textures.pop_back();
        m_prepared.notes.erase(m_prepared.notes.begin() + static_cast<std::ptrdiff_t>(notes),
                               m_prepared.notes.end());
    });
    return static_cast<int>(textures.size()) - 1;
}

// --- meshes ----------------------------------------------------------------------------------------------

std::string CEditedScene::NewMeshName(const std::string& base) {
    std::string name = m_meshNames.Take(base);
    m_undo.emplace_back([this, name] { m_meshNames.Release(name); });
    return name;
}

void CEditedScene::AddMesh(CNewMesh mesh, CPreparedMesh prepared) {
    m_scene.AddMesh(std::move(mesh));
    m_prepared.meshes.push_back(std::move(prepared));
    m_undo.emplace_back([this] {
        m_prepared.meshes.pop_back();
        m_scene.DropLastMesh();
    });
}

void CEditedScene::TakeMeshOut(std::size_t mesh) {
    m_scene.SetInFile(mesh, false);
    m_undo.emplace_back([this, mesh, held = std::exchange(m_prepared.meshes[mesh], {})]() mutable {
        m_prepared.meshes[mesh] = std::move(held);
        m_scene.SetInFile(mesh, true);
    });
}

void CEditedScene::PlaceMesh(std::size_t mesh, const CMeshPlacing& placing) {
    m_undo.emplace_back(
        [this, mesh, before = m_scene.Meshes()[mesh].placing] { m_scene.Place(mesh, before); });
    m_scene.Place(mesh, placing);
}

void CEditedScene::AddTexCoords(std::size_t mesh) {
    CPreparedMesh& old = m_prepared.meshes[mesh];
    const CMeshView& view = m_scene.Meshes()[mesh];
    if (!old.texCoords.empty() || view.texelCount == 0) return;
    CPreparedMesh made = PrepareMesh(view, NoMaterial(), true);
    made.toLocal = old.toLocal;
    m_undo.emplace_back([this, mesh, held = std::exchange(old, std::move(made))]() mutable {
        m_prepared.meshes[mesh] = std::move(held);
        m_placesChanged = true;
    });
    m_placesChanged = true;  // a mesh that changes its shape needs that of this frame
}

bool CEditedScene::IsShared(std::size_t mesh) const {
    return std::count_if(m_prepared.nodes.begin(), m_prepared.nodes.end(), [mesh](const CPreparedNode& node) {
               return node.mesh == static_cast<int>(mesh);
           }) > 1;
}
