// SPDX-License-Identifier: MIT
#include "model/scene/CScene.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

#include <new>

#include "model/scene/CNoteList.h"
#include "model/scene/lib3ds_list.h"
#include "model/scene/mesh_arrays.h"

namespace {
/** Empties it and gives its memory back, which neither clear() nor the assignment of {} does. */
template <class T>
void Release(std::vector<T>& vector) {
    std::vector<T>().swap(vector);
}
}  // namespace

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
    CNoteList notes;
    scene.RefreshMeshes();
    for (CMeshView& view : scene.m_meshes) RepairMeshArrays(view, notes);
    scene.m_notes = notes.Take();
    return scene;
}

CScene CScene::Borrow(Lib3dsFile& file) {
    return Adopt(CLib3dsFilePtr(&file, CLib3dsFileDeleter{true}));
}

Lib3dsFile* CScene::File() {
    if (m_complete) return m_file.get();
    const auto materials = ListOf(m_file->materials);
    for (const CMeshView& view : m_meshes) {
        if (!CompleteMesh(view, materials)) throw std::bad_alloc();
    }
    m_complete = true;
    RefreshMeshes();
    Release(m_bytes);
    Release(m_patches);
    return m_file.get();
}

void CScene::RefreshMeshes() {
    if (!m_complete) return;
    m_meshes.clear();
    const auto materials = ListOf(m_file->materials);
    for (Lib3dsMesh* mesh = m_file->meshes; mesh; mesh = mesh->next)
        m_meshes.push_back(ViewOfMesh(*mesh, materials));
}

void CScene::DropArrays() {
    Release(m_meshes);
    Release(m_bytes);
    Release(m_patches);
    m_complete = true;
}
