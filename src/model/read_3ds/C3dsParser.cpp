// SPDX-License-Identifier: MIT
#include "model/read_3ds/C3dsParser.h"

#include <lib3ds/camera.h>
#include <lib3ds/chunk.h>
#include <lib3ds/file.h>
#include <lib3ds/light.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>
#include <lib3ds/node.h>

#include <algorithm>
#include <cmath>

#include "base/jobs/parallel_for.h"
#include "base/name_hash.h"
#include "base/text/lng.h"
#include "model/read_3ds/clean_chunks.h"
#include "model/read_3ds/link_nodes.h"
#include "model/read_3ds/mesh_array_views.h"
#include "model/read_3ds/read_name.h"
#include "model/read_3ds/scene_limits.h"
#include "model/scene/lib3ds_list.h"
#include "model/scene/lib3ds_memory_io.h"
#include "model/scene/lib3ds_name.h"
#include "model/scene/scene_budget.h"
#include "model/scene/unique_names.h"

namespace {
/** Lets lib3ds read the clean copy of a chunk by one of its functions. */
template <class Read>
bool ReadClean(std::span<const std::byte> bytes, const C3dsChunk& chunk, CNoteList& notes, Read read) {
    std::vector<std::byte> clean;
    CopyCleanChunk(bytes, chunk, clean, notes);
    if (clean.empty()) return false;
    CLib3dsMemoryReader reader(clean);
    return read(reader.Io()) != 0;
}

std::uint32_t ObjectFlag(std::uint16_t id) {
    switch (id) {
        case LIB3DS_OBJ_HIDDEN:
            return LIB3DS_OBJECT_HIDDEN;
        case LIB3DS_OBJ_VIS_LOFTER:
            return LIB3DS_OBJECT_VIS_LOFTER;
        case LIB3DS_OBJ_DOESNT_CAST:
            return LIB3DS_OBJECT_DOESNT_CAST;
        case LIB3DS_OBJ_MATTE:
            return LIB3DS_OBJECT_MATTE;
        case LIB3DS_OBJ_DONT_RCVSHADOW:
            return LIB3DS_OBJECT_DONT_RCVSHADOW;
        case LIB3DS_OBJ_FAST:
            return LIB3DS_OBJECT_FAST;
        case LIB3DS_OBJ_FROZEN:
            return LIB3DS_OBJECT_FROZEN;
        default:
            return 0;
    }
}

bool IsMainChunk(std::uint16_t id) {
    return id == LIB3DS_M3DMAGIC || id == LIB3DS_MLIBMAGIC || id == LIB3DS_CMAGIC;
}
}  // namespace

bool C3dsParser::MayBeScene(std::span<const std::byte> firstBytes) {
    CByteCursor header(firstBytes, 0, firstBytes.size());
    const auto id = header.Read<std::uint16_t>();
    return header.RanOut() || id == LIB3DS_MDATA || IsMainChunk(id);
}

CResult<CScene> C3dsParser::Parse(std::vector<std::byte> bytes) {
    C3dsParser parser(std::move(bytes));
    if (CStatus status = parser.ReadMain(); !status) return status.Error();
    parser.FinishMeshes();
    parser.SeparateMorphs();
    ClampScene(*parser.m_scene.m_file, parser.m_notes);
    LinkNodes(*parser.m_scene.m_file, parser.m_notes);
    parser.m_scene.m_notes = parser.m_notes.Take();
    return std::move(parser.m_scene);
}

C3dsParser::C3dsParser(std::vector<std::byte> bytes) : m_keyframer(*m_scene.m_file, m_notes) {
    m_scene.m_bytes = std::move(bytes);
    Lib3dsFile& file = *m_scene.m_file;
    m_nextMaterial = &file.materials;
    m_nextMesh = &file.meshes;
    m_nextCamera = &file.cameras;
    m_nextLight = &file.lights;
}

CStatus C3dsParser::ReadMain() {
    const std::size_t size = Bytes().size();
    CByteCursor header(Bytes(), 0, size);
    const auto id = header.Read<std::uint16_t>();
    const std::size_t claimed = header.Read<std::uint32_t>();
    if (header.RanOut())
        return CError{EErrorCode::BadFormat, lng::Mark("The file is too short to be a 3D Studio file"), ""};
    if (id == LIB3DS_MDATA) {
        m_notes.Repaired("The file begins with its mesh section");
        ReadSections({0, 0, size});
        return CDone{};
    }
    if (!IsMainChunk(id)) return CError{EErrorCode::BadFormat, lng::Mark("This is not a 3D Studio file"), ""};
    // A wrong size of the main chunk is common; what follows tells better where the scene ends.
    if (claimed != size) m_notes.Repaired("The file's size is not what its first chunk says");
    ReadSections({id, CChunkWalker::kHeaderSize, size});
    if (!m_scene.m_file->meshes && !m_scene.m_file->nodes && !m_scene.m_file->materials &&
        !m_scene.m_file->cameras && !m_scene.m_file->lights && claimed != size) {
        return CError{EErrorCode::BadFormat,
                      lng::Mark("Nothing in this file can be read as a 3D Studio scene"), ""};
    }
    return CDone{};
}

void C3dsParser::ReadSections(const C3dsChunk& main) {
    CChunkWalker sections(Bytes(), main.begin, main.end);
    for (C3dsChunk section; sections.Next(section);) {
        CByteCursor in(Bytes(), section.begin, section.end);
        switch (section.id) {
            case LIB3DS_M3D_VERSION:
                m_scene.m_file->mesh_version = in.Read<std::uint32_t>();
                break;
            case LIB3DS_MDATA:
                ReadMeshData(section);
                break;
            case LIB3DS_KFDATA:
                m_keyframer.Read(Bytes(), section);
                break;
            default:
                break;
        }
    }
    if (sections.End() != CChunkWalker::EEnd::Clean)
        m_notes.Repaired("The file ends inside a chunk, or with bytes that are none");
}

void C3dsParser::ReadMeshData(const C3dsChunk& chunk) {
    CChunkWalker parts(Bytes(), chunk.begin, chunk.end);
    for (C3dsChunk part; parts.Next(part);) {
        switch (part.id) {
            case LIB3DS_MAT_ENTRY:
                ReadMaterial(part);
                break;
            case LIB3DS_NAMED_OBJECT:
                ReadNamedObject(part);
                break;
            case LIB3DS_KFDATA:
                m_keyframer.Read(Bytes(), part);
                break;
            default:
                ReadSetting(part);
                break;
        }
    }
    if (parts.End() != CChunkWalker::EEnd::Clean) m_notes.Repaired("A chunk does not fit into its parent");
}

void C3dsParser::ReadSetting(const C3dsChunk& chunk) {
    if (!IsCleanableChunk(chunk.id)) return;
    // lib3ds' function that reads settings is not public; reading a file that holds this one setting
    // calls it.
    std::vector<std::byte> clean;
    CopyCleanChunk(Bytes(), chunk, clean, m_notes);
    if (clean.empty()) return;
    const auto size = static_cast<std::uint32_t>(clean.size() + CChunkWalker::kHeaderSize);
    const std::uint16_t id = LIB3DS_MDATA;
    std::byte header[CChunkWalker::kHeaderSize];
    std::memcpy(header, &id, 2);
    std::memcpy(header + 2, &size, 4);
    clean.insert(clean.begin(), std::begin(header), std::end(header));
    CLib3dsMemoryReader reader(clean);
    if (!lib3ds_file_read(m_scene.m_file.get(), reader.Io()))
        m_notes.Repaired("A setting of the scene could not be read");
}

void C3dsParser::ReadMaterial(const C3dsChunk& chunk) {
    static_assert(scene_budget::kMaterials < CMeshView::kNoMaterial);
    if (m_materialCount >= scene_budget::kMaterials)
        return m_notes.Limited("There are more than 16,384 materials; the rest is not used");
    Lib3dsMaterial* material = lib3ds_material_new();
    if (!material) return;
    AppendToList(m_nextMaterial, material);
    ++m_materialCount;
    const auto read = [material](Lib3dsIo* io) { return lib3ds_material_read(material, io); };
    if (!ReadClean(Bytes(), chunk, m_notes, read))
        m_notes.Repaired("A material could not be read completely");
}

void C3dsParser::ReadNamedObject(const C3dsChunk& chunk) {
    CByteCursor in(Bytes(), chunk.begin, chunk.end);
    const std::string name = ReadName(in, m_notes);
    std::uint32_t flags = 0;
    std::vector<C3dsChunk> parts;
    CChunkWalker walker(Bytes(), in.Position(), chunk.end);
    for (C3dsChunk part; walker.Next(part);) {
        flags |= ObjectFlag(part.id);
        if (part.id == LIB3DS_N_TRI_OBJECT || part.id == LIB3DS_N_CAMERA || part.id == LIB3DS_N_DIRECT_LIGHT)
            parts.push_back(part);
    }
    if (walker.End() != CChunkWalker::EEnd::Clean) m_notes.Repaired("A chunk does not fit into its parent");

    for (const C3dsChunk& part : parts) {
        if (part.id == LIB3DS_N_TRI_OBJECT) AddMesh(name, part, flags);
        if (part.id == LIB3DS_N_CAMERA) AddCamera(name, part, flags);
        if (part.id == LIB3DS_N_DIRECT_LIGHT) AddLight(name, part, flags);
    }
}

void C3dsParser::AddCamera(const std::string& name, const C3dsChunk& chunk, std::uint32_t objectFlags) {
    if (m_cameraCount >= scene_budget::kCameras)
        return m_notes.Limited("There are more than 10,000 cameras; the rest is left out");
    Lib3dsCamera* camera = lib3ds_camera_new(name.c_str());
    if (!camera) return;
    camera->object_flags = objectFlags;
    const auto read = [camera](Lib3dsIo* io) { return lib3ds_camera_read(camera, io); };
    if (!ReadClean(Bytes(), chunk, m_notes, read)) return lib3ds_camera_free(camera);
    AppendToList(m_nextCamera, camera);
    ++m_cameraCount;
}

void C3dsParser::AddLight(const std::string& name, const C3dsChunk& chunk, std::uint32_t objectFlags) {
    if (m_lightCount >= scene_budget::kLights)
        return m_notes.Limited("There are more than 10,000 lights; the rest is left out");
    Lib3dsLight* light = lib3ds_light_new(name.c_str());
    if (!light) return;
    light->object_flags = objectFlags;
    light->color[0] = light->color[1] = light->color[2] = 1;  // as 3D Studio makes new lights
    light->multiplier = 1;
    const auto read = [light](Lib3dsIo* io) { return lib3ds_light_read(light, io); };
    if (!ReadClean(Bytes(), chunk, m_notes, read)) return lib3ds_light_free(light);
    AppendToList(m_nextLight, light);
    ++m_lightCount;
}

bool C3dsParser::MayAddMesh(bool hasFaces) {
    if (!hasFaces && m_emptyMeshCount >= scene_budget::kMeshesWithoutFaces) {
        m_notes.Limited("There are more than 10,000 meshes without faces; the rest of them is left out");
        return false;
    }
    if (m_meshChunks.size() >= scene_budget::kMeshes) {
        m_notes.Limited("There are more than 100,000 meshes; the rest is left out");
        return false;
    }
    m_emptyMeshCount += hasFaces ? 0 : 1;
    return true;
}

void C3dsParser::AddMesh(const std::string& name, const C3dsChunk& chunk, std::uint32_t objectFlags) {
    CMeshChunk parsed = CMeshChunk::Parse(Bytes(), chunk, m_notes);
    if (!MayAddMesh(parsed.faces.count > 0 && parsed.points.count > 0)) return;
    Lib3dsMesh* mesh = lib3ds_mesh_new(name.c_str());
    if (!mesh) return;
    mesh->object_flags = objectFlags;
    mesh->color = parsed.color;
    for (std::size_t row = 0; row < 4; ++row) std::copy_n(parsed.matrix[row], 3, mesh->matrix[row]);
    FillMeshMapping(parsed, *mesh);
    AppendToList(m_nextMesh, mesh);
    m_meshChunks.push_back(std::move(parsed));
}

void C3dsParser::FinishMeshes() {
    Lib3dsFile& file = *m_scene.m_file;
    // Faces name materials, so the names that they use are looked up before repeated ones are changed.
    const CMaterialIndex materials(file.materials);
    const auto meshes = ListOf(file.meshes);
    std::vector<CMeshView>& views = m_scene.m_meshes;
    views.resize(meshes.size());
    std::vector<CNoteList> notes(meshes.size());
    std::vector<std::vector<std::vector<std::byte>>> patches(meshes.size());
    ParallelFor(meshes.size(), 0, [&](std::size_t i) {
        views[i] = ViewOfChunk(m_scene.m_bytes, m_meshChunks[i], *meshes[i], materials, patches[i], notes[i]);
    });
    for (std::size_t i = 0; i < meshes.size(); ++i) {
        FillPointFlags(Bytes(), m_meshChunks[i], *meshes[i]);
        for (auto& patch : patches[i]) m_scene.m_patches.push_back(std::move(patch));
        for (CSceneNote& note : notes[i].Take()) m_notes.Add(std::move(note));
    }
    m_meshChunks.clear();
    MakeNamesUnique(file, m_notes);
}

void C3dsParser::SeparateMorphs() {
    // The nodes are one flat list still.
    std::vector<Lib3dsNode*> morphing;
    CNameMap<std::size_t> users;
    for (Lib3dsNode* node = m_scene.m_file->nodes; node; node = node->next) {
        if (node->type != LIB3DS_OBJECT_NODE) continue;
        ++users[node->name];
        if (node->data.object.morph_track.keyL) morphing.push_back(node);
    }
    if (morphing.empty()) return;
    CNameMap<std::size_t> meshes;
    CUniqueNames names;
    for (std::size_t i = 0; i < m_scene.m_meshes.size(); ++i) {
        meshes.emplace(m_scene.m_meshes[i].mesh->name, i);
        names.Add(m_scene.m_meshes[i].mesh->name);
    }
    std::size_t pointsLeft = scene_budget::kMorphPoints, nodesLeft = scene_budget::kMorphingNodes;
    for (Lib3dsNode* node : morphing) {
        const auto mesh = meshes.find(std::string_view(node->name));
        std::size_t& shownBy = users.find(std::string_view(node->name))->second;
        if (mesh == meshes.end() || shownBy < 2) continue;
        const std::size_t points = m_scene.m_meshes[mesh->second].pointCount;
        if (nodesLeft == 0 || points > pointsLeft || m_scene.m_meshes.size() >= scene_budget::kMeshes)
            continue;
        pointsLeft -= points;
        --nodesLeft;
        --shownBy;
        const std::string name = names.Take(node->name);
        m_scene.AddMesh(m_scene.CopyOfMesh(mesh->second, name));
        CopyName(node->name, name);
    }
}
