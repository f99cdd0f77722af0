// SPDX-License-Identifier: MIT
#include "model/read_obj/CObjSceneMaker.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

#include <algorithm>
#include <new>

#include "model/read_obj/mtl_material.h"
#include "model/scene/lib3ds_list.h"
#include "model/scene/lib3ds_name.h"
#include "model/scene/unique_names.h"

namespace {

constexpr const char* kDefaultName = "Default";
constexpr const char* kNamelessMesh = "Object";

/** As lib3ds keeps names, without control characters. */
std::string StoredName(std::string_view asked, const char* ifEmpty) {
    std::string name(lib3ds_name::Cut(asked));
    std::replace_if(
        name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
    return name.empty() ? ifEmpty : name;
}

void FillPoints(Lib3dsMesh& mesh, const CObjPiece& piece) {
    if (!lib3ds_mesh_new_point_list(&mesh, static_cast<Lib3dsDword>(piece.points.size())))
        throw std::bad_alloc();
    for (std::size_t i = 0; i < piece.points.size(); ++i) {
        const CVec3 p = piece.points[i];
        mesh.pointL[i].pos[0] = p.x;
        mesh.pointL[i].pos[1] = p.y;
        mesh.pointL[i].pos[2] = p.z;
    }
    if (piece.texels.empty()) return;
    if (!lib3ds_mesh_new_texel_list(&mesh, static_cast<Lib3dsDword>(piece.texels.size())))
        throw std::bad_alloc();
    for (std::size_t i = 0; i < piece.texels.size(); ++i) {
        mesh.texelL[i][0] = piece.texels[i].x;
        mesh.texelL[i][1] = piece.texels[i].y;
    }
}

}  // namespace

CObjSceneMaker::CObjSceneMaker(const CObjGeometry& geometry, const CMtlLibrary& library, CNoteList& notes)
    : m_geometry(geometry),
      m_library(library),
      m_notes(notes),
      m_file(lib3ds_file_new()),
      m_smoothing(SmoothingSource()),
      m_materialNames(geometry.materials.size() + 1) {
    if (!m_file) throw std::bad_alloc();
    m_materialLink = &m_file->materials;
    m_meshLink = &m_file->meshes;
}

CLib3dsFilePtr CObjSceneMaker::Make() {
    CObjMeshBuilder builder(
        m_geometry, m_smoothing == EObjSmoothing::Normals,
        [this](std::uint32_t group, CObjPiece piece) { AddMesh(group, std::move(piece)); });
    builder.Build();
    return std::move(m_file);
}

EObjSmoothing CObjSceneMaker::SmoothingSource() const {
    // One group all over the file is what many programs write whatever the normals are.
    std::uint32_t group = 0;
    for (const CObjSegment& segment : m_geometry.segments) {
        if (segment.smoothing == 0 || segment.smoothing == group) continue;
        if (group != 0) return EObjSmoothing::Groups;
        group = segment.smoothing;
    }
    if (!m_geometry.cornerNormals.empty() && !m_geometry.normals.empty()) return EObjSmoothing::Normals;
    return m_geometry.smoothingStated ? EObjSmoothing::Groups : EObjSmoothing::Creases;
}

void CObjSceneMaker::AddMesh(std::uint32_t group, CObjPiece piece) {
    AssignSmoothing(piece, m_geometry.normals, m_smoothing);
    const std::string name = m_meshNames.Take(StoredName(m_geometry.groups[group], kNamelessMesh));
    Lib3dsMesh* mesh = lib3ds_mesh_new(name.c_str());
    if (!mesh) throw std::bad_alloc();
    AppendToList(m_meshLink, mesh);
    FillPoints(*mesh, piece);
    if (!lib3ds_mesh_new_face_list(mesh, static_cast<Lib3dsDword>(piece.faces.size())))
        throw std::bad_alloc();
    for (std::size_t i = 0; i < piece.faces.size(); ++i) {
        const CObjPiece::CFace& from = piece.faces[i];
        Lib3dsFace& to = mesh->faceL[i];
        std::copy_n(from.points, 3, to.points);
        to.flags = from.flags;
        to.smoothing = from.smoothing;
        CopyName(to.material, MaterialName(from.material));
    }
}

const std::string& CObjSceneMaker::MaterialName(std::int32_t material) {
    const std::string& name = m_materialNames[static_cast<std::size_t>(material + 1)];
    if (name.empty()) AddMaterial(material);
    return name;
}

void CObjSceneMaker::AddMaterial(std::int32_t material) {
    const std::string asked =
        material < 0 ? std::string() : m_geometry.materials[static_cast<std::size_t>(material)];
    const std::string name = m_namesOfMaterials.Take(StoredName(asked, kDefaultName));
    const std::optional<std::string_view> text = m_library.TextOf(asked);
    if (material >= 0 && !text) m_notes.Missing("Material not found", CNoteList::Printable(asked));
    AppendToList(m_materialLink, MakeMtlMaterial(name, text));
    m_materialNames[static_cast<std::size_t>(material + 1)] = name;
}
