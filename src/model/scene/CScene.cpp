// SPDX-License-Identifier: MIT
#include "model/scene/CScene.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

#include <algorithm>
#include <new>

#include "model/scene/CMaterialIndex.h"
#include "model/scene/CNoteList.h"
#include "model/scene/lib3ds_copies.h"
#include "model/scene/lib3ds_list.h"
#include "model/scene/mesh_arrays.h"

namespace {

/** Empties it and gives its memory back, which neither clear() nor the assignment of {} does. */
template <class T>
void Release(std::vector<T>& vector) {
    std::vector<T>().swap(vector);
}

void BringUpToDate(CMeshView& view, std::span<Lib3dsMaterial* const> materials) {
    if (!view.isFilled) {
        if (!FillMesh(view, materials, *view.mesh)) throw std::bad_alloc();
        PointAtLists(view);
    } else if (view.faceNamesAreOld) {
        WriteFaceMaterials(view, materials, *view.mesh);
    }
    view.faceNamesAreOld = false;
    if (view.placeIsOld) PlacePoints(view);
    view.placeIsOld = false;
}

}  // namespace

void CLib3dsMeshDeleter::operator()(Lib3dsMesh* mesh) const {
    lib3ds_mesh_free(mesh);
}

void CLib3dsFileDeleter::operator()(Lib3dsFile* file) const {
    if (!keeps) lib3ds_file_free(file);
}

CScene::CScene() : m_file(lib3ds_file_new()) {
    if (!m_file) throw std::bad_alloc();
}
CScene::CScene(CScene&&) noexcept = default;
CScene& CScene::operator=(CScene&&) noexcept = default;
CScene::~CScene() = default;

CScene CScene::Adopt(CLib3dsFilePtr file) {
    CScene scene(std::move(file));
    const CMaterialIndex materials(scene.m_file->materials);
    for (Lib3dsMesh* mesh = scene.m_file->meshes; mesh; mesh = mesh->next)
        scene.m_meshes.push_back(ViewOfMesh(*mesh, materials));
    CNoteList notes;
    for (CMeshView& view : scene.m_meshes) RepairMeshArrays(view, notes);
    scene.m_notes = notes.Take();
    return scene;
}

CScene CScene::Borrow(Lib3dsFile& file) {
    return Adopt(CLib3dsFilePtr(&file, CLib3dsFileDeleter{true}));
}

Lib3dsFile* CScene::File() {
    const auto materials = ListOf(m_file->materials);
    // Also those that were taken out: they may come back, but the bytes are freed.
    for (CMeshView& view : m_meshes) BringUpToDate(view, materials);
    Release(m_bytes);
    Release(m_patches);
    return m_file.get();
}

Lib3dsMesh*& CScene::LinkTo(std::size_t mesh) {
    while (mesh > 0) {
        const CMeshView& before = m_meshes[--mesh];
        if (before.isInFile) return before.mesh->next;
    }
    return m_file->meshes;
}

void CScene::SetInFile(std::size_t mesh, bool isInFile) {
    CMeshView& view = m_meshes[mesh];
    if (view.isInFile == isInFile) return;
    Lib3dsMesh*& link = LinkTo(mesh);
    if (isInFile) {
        view.mesh->next = link;
        link = m_takenOut.extract(mesh).mapped().release();
    } else {
        CLib3dsMeshPtr& kept = m_takenOut[mesh];
        link = view.mesh->next;
        view.mesh->next = nullptr;
        kept.reset(view.mesh);
    }
    view.isInFile = isInFile;
}

void CScene::AddMesh(CNewMesh mesh) {
    m_meshes.push_back(std::move(mesh.view));
    m_meshes.back().mesh = mesh.mesh.get();
    LinkTo(m_meshes.size() - 1) = mesh.mesh.release();
}

void CScene::DropLastMesh() {
    SetInFile(m_meshes.size() - 1, false);
    m_meshes.pop_back();
    m_takenOut.erase(m_meshes.size());
}

CNewMesh CScene::CopyOfMesh(std::size_t mesh, std::string_view name) const {
    const CMeshView& from = m_meshes[mesh];
    // Lists are copied at once: their owner may get other points later.
    CNewMesh copy{CLib3dsMeshPtr(from.isFilled ? lib3ds_copies::CopyMesh(*from.mesh, name)
                                               : lib3ds_copies::CopyMeshHeader(*from.mesh, name)),
                  from};
    if (!copy.mesh) throw std::bad_alloc();
    copy.view.mesh = copy.mesh.get();
    copy.view.isInFile = true;
    if (!from.isFilled) return copy;
    PointAtLists(copy.view);
    if (from.ownPoints.empty()) return copy;
    copy.view.points = reinterpret_cast<const std::byte*>(copy.view.ownPoints.data());
    copy.view.pointStride = sizeof(CVec3);
    return copy;
}

void CScene::Place(std::size_t mesh, const std::optional<CMeshPlacing>& placing) {
    CMeshView& view = m_meshes[mesh];
    view.placing = placing;
    view.placeIsOld = true;
    if (view.facesAreTurned) TurnFaces(view);  // the view reads them
}

CMat4 CScene::MatrixOf(std::size_t mesh) const {
    const CMeshView& view = m_meshes[mesh];
    return view.placing ? view.placing->matrix : view.matrix;
}

void CScene::ChangeFaceMaterial(std::size_t mesh, std::uint16_t from, std::uint16_t to) {
    CMeshView& view = m_meshes[mesh];
    if (view.faceMaterials.empty() && from == CMeshView::kNoMaterial)
        view.faceMaterials.assign(view.faceCount, CMeshView::kNoMaterial);
    std::replace(view.faceMaterials.begin(), view.faceMaterials.end(), from, to);
    view.faceNamesAreOld = true;
}

void CScene::AddMaterial(Lib3dsMaterial* material) {
    if (m_materials.empty()) m_materials = ListOf(m_file->materials);
    m_materials.push_back(material);
    Lib3dsMaterial*& link =
        m_materials.size() == 1 ? m_file->materials : m_materials[m_materials.size() - 2]->next;
    link = material;
}

void CScene::DropLastMaterial() {
    lib3ds_material_free(m_materials.back());
    m_materials.pop_back();
    (m_materials.empty() ? m_file->materials : m_materials.back()->next) = nullptr;
}

void CScene::DropArrays() {
    Release(m_meshes);
    Release(m_bytes);
    Release(m_patches);
}
