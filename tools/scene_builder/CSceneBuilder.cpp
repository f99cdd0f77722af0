// SPDX-License-Identifier: MIT
#include "scene_builder/CSceneBuilder.h"

#include <lib3ds/camera.h>
#include <lib3ds/file.h>
#include <lib3ds/light.h>
#include <lib3ds/material.h>
#include <lib3ds/matrix.h>
#include <lib3ds/mesh.h>
#include <lib3ds/node.h>
#include <lib3ds/vector.h>

#include <algorithm>
#include <cstring>
#include <numbers>
#include <stdexcept>

#include "files/file_util_ex.h"
#include "model/save/morph_tracks.h"
#include "model/scene/lib3ds_memory_io.h"

namespace {

constexpr const char* kDummyName = "$$$DUMMY";

template <std::size_t N>
void SetText(char (&target)[N], const std::string& text) {
    if (text.size() >= N) throw std::logic_error("name too long: " + text);
    std::memcpy(target, text.c_str(), text.size() + 1);
}

void SetVector(Lib3dsVector target, CVec3 value) {
    target[0] = value.x;
    target[1] = value.y;
    target[2] = value.z;
}

void AddKey(Lib3dsLin3Track& track, int frame, CVec3 value) {
    Lib3dsLin3Key* key = lib3ds_lin3_key_new();
    key->tcb.frame = frame;
    SetVector(key->value, value);
    lib3ds_lin3_track_insert(&track, key);
}

void AddKey(Lib3dsLin1Track& track, int frame, float value) {
    Lib3dsLin1Key* key = lib3ds_lin1_key_new();
    key->tcb.frame = frame;
    key->value = value;
    lib3ds_lin1_track_insert(&track, key);
}

void AddKey(Lib3dsQuatTrack& track, int frame, float angleDeg, CVec3 axis) {
    Lib3dsQuatKey* key = lib3ds_quat_key_new();
    key->tcb.frame = frame;
    // The format turns the other way round an axis than mathematics does.
    key->angle = -angleDeg * std::numbers::pi_v<float> / 180.0f;
    SetVector(key->axis, axis);
    lib3ds_quat_track_insert(&track, key);
}

void CopyPoints(Lib3dsMesh& mesh, const CShape& shape) {
    const auto count = static_cast<Lib3dsDword>(shape.points.size());
    if (count > 65535 || shape.triangles.size() > 65535)
        throw std::logic_error(std::string("mesh too large: ") + mesh.name);
    lib3ds_mesh_new_point_list(&mesh, count);
    for (Lib3dsDword i = 0; i < count; ++i) SetVector(mesh.pointL[i].pos, shape.points[i]);
    if (shape.texCoords.empty()) return;
    lib3ds_mesh_new_texel_list(&mesh, count);
    for (Lib3dsDword i = 0; i < count; ++i) {
        mesh.texelL[i][0] = shape.texCoords[i].x;
        mesh.texelL[i][1] = shape.texCoords[i].y;
    }
}

void CopyFaces(Lib3dsMesh& mesh, const CShape& shape) {
    lib3ds_mesh_new_face_list(&mesh, static_cast<Lib3dsDword>(shape.triangles.size()));
    for (std::size_t i = 0; i < shape.triangles.size(); ++i) {
        const CShapeTriangle& triangle = shape.triangles[i];
        Lib3dsFace& face = mesh.faceL[i];
        for (int k = 0; k < 3; ++k) face.points[k] = static_cast<Lib3dsWord>(triangle.corner[k]);
        face.flags = LIB3DS_FACE_FLAG_VIS_AB | LIB3DS_FACE_FLAG_VIS_BC | LIB3DS_FACE_FLAG_VIS_AC;
        face.smoothing = triangle.smoothing;
        if (!shape.materials.empty()) SetText(face.material, shape.materials.at(triangle.material));
    }
}

}  // namespace

void CSceneBuilder::CFileDeleter::operator()(Lib3dsFile* file) const {
    lib3ds_file_free(file);
}

CSceneBuilder::CSceneBuilder(int frames) : m_file(lib3ds_file_new()) {
    m_file->mesh_version = 3;
    m_file->keyf_revision = 5;
    m_file->frames = frames;
    m_file->segment_to = frames;
    SetVector(m_file->ambient, {0.3f, 0.3f, 0.3f});
}

CSceneBuilder::~CSceneBuilder() = default;

Lib3dsMaterial& CSceneBuilder::AddMaterial(const std::string& name, const CMaterialValues& values) {
    Lib3dsMaterial* material = lib3ds_material_new();
    SetText(material->name, name);
    SetVector(material->ambient, values.color);
    SetVector(material->diffuse, values.color);
    SetVector(material->specular, {values.specular, values.specular, values.specular});
    material->shininess = values.shininess;
    material->shin_strength = values.shininessStrength;
    material->transparency = values.transparency;
    material->self_ilpct = values.selfIllumination;
    material->self_illum = values.selfIllumination > 0;
    material->two_sided = values.twoSided;
    material->shading = LIB3DS_PHONG;
    if (!values.texture.empty()) SetMap(material->texture1_map, values.texture);
    lib3ds_file_insert_material(m_file.get(), material);
    return *material;
}

void CSceneBuilder::SetMap(Lib3dsTextureMap& map, const std::string& picture, float amount, CVec2 scale) {
    SetText(map.name, picture);
    map.percent = amount;
    map.scale[0] = scale.x;
    map.scale[1] = scale.y;
    map.flags = 0;  // lib3ds' own default draws the picture only once
}

Lib3dsMesh& CSceneBuilder::AddMesh(const std::string& name, const CShape& shape, bool mirrored) {
    Lib3dsMesh* mesh = lib3ds_mesh_new(name.c_str());
    CopyPoints(*mesh, shape);
    CopyFaces(*mesh, shape);
    lib3ds_file_insert_mesh(m_file.get(), mesh);
    m_meshes.emplace_back(mesh, mirrored);
    return *mesh;
}

void CSceneBuilder::Insert(Lib3dsNode& node, Lib3dsNode* parent, const std::string& name) {
    SetText(node.name, name);
    node.node_id = static_cast<Lib3dsWord>(m_nextNodeId++);
    node.parent = parent;
    node.parent_id = parent != nullptr ? parent->node_id : static_cast<Lib3dsWord>(LIB3DS_NO_PARENT);
    lib3ds_file_insert_node(m_file.get(), &node);
}

Lib3dsNode& CSceneBuilder::AddObject(const std::string& mesh, Lib3dsNode* parent, CVec3 position,
                                     const std::string& instance) {
    Lib3dsNode* node = lib3ds_node_new_object();
    SetText(node->data.object.instance, instance);
    AddKey(node->data.object.pos_track, 0, position);
    AddKey(node->data.object.rot_track, 0, 0, {0, 0, 1});
    AddKey(node->data.object.scl_track, 0, {1, 1, 1});
    Insert(*node, parent, mesh);
    m_objects.push_back(node);
    return *node;
}

Lib3dsNode& CSceneBuilder::AddPart(const std::string& name, const CShape& shape, Lib3dsNode* parent,
                                   CVec3 position) {
    (void)AddMesh(name, shape);  // the node refers to it by name
    return AddObject(name, parent, position);
}

Lib3dsNode& CSceneBuilder::AddDummy(const std::string& name, Lib3dsNode* parent, CVec3 position) {
    Lib3dsNode& node = AddObject(kDummyName, parent, position, name);
    SetVector(node.data.object.bbox_min, {-1, -1, -1});
    SetVector(node.data.object.bbox_max, {1, 1, 1});
    return node;
}

void CSceneBuilder::SetPivot(Lib3dsNode& object, CVec3 pivot) {
    SetVector(object.data.object.pivot, pivot);
}

void CSceneBuilder::SetScale(Lib3dsNode& object, CVec3 scale) {
    SetVector(object.data.object.scl_track.keyL->value, scale);
}

void CSceneBuilder::SetTurn(Lib3dsNode& object, float angleDeg, CVec3 axis) {
    lib3ds_quat_track_free_keys(&object.data.object.rot_track);
    object.data.object.rot_track.keyL = nullptr;
    AddKey(object.data.object.rot_track, 0, angleDeg, axis);
}

void CSceneBuilder::Spin(Lib3dsNode& object, float turns, float startDeg, CVec3 axis) {
    SetTurn(object, startDeg, axis);
    object.data.object.rot_track.flags = LIB3DS_REPEAT;
    // Each key is a turn from the one before, and the shortest way round is taken: an eighth is unmistakable.
    const int keys = std::max(1, static_cast<int>(std::ceil(std::fabs(turns) * 8)));
    for (int i = 1; i <= keys; ++i) {
        const int frame = static_cast<int>(std::lround(static_cast<double>(m_file->frames) * i / keys));
        AddKey(object.data.object.rot_track, frame, turns * 360 / static_cast<float>(keys), axis);
    }
}

void CSceneBuilder::MoveTo(Lib3dsNode& object, int frame, CVec3 position) {
    AddKey(object.data.object.pos_track, frame, position);
}

void CSceneBuilder::MorphTo(Lib3dsNode& object, int frame, const std::string& mesh) {
    Lib3dsMorphKey* key = lib3ds_morph_key_new();
    key->tcb.frame = frame;
    SetText(key->name, mesh);
    lib3ds_morph_track_insert(&object.data.object.morph_track, key);
}

void CSceneBuilder::HideFrom(Lib3dsNode& object, int frame) {
    Lib3dsBoolKey* key = lib3ds_bool_key_new();
    key->tcb.frame = frame;
    lib3ds_bool_track_insert(&object.data.object.hide_track, key);
}

void CSceneBuilder::AddOmni(const std::string& name, CVec3 position, CVec3 color, float multiplier) {
    Lib3dsLight* light = lib3ds_light_new(name.c_str());
    SetVector(light->position, position);
    SetVector(light->color, color);
    light->multiplier = multiplier;
    lib3ds_file_insert_light(m_file.get(), light);
    Lib3dsNode* node = lib3ds_node_new_light();
    AddKey(node->data.light.pos_track, 0, position);
    AddKey(node->data.light.col_track, 0, color);
    Insert(*node, nullptr, name);
}

void CSceneBuilder::AddSpot(const std::string& name, const CAim& aim, CVec3 color, CCone cone,
                            float multiplier) {
    Lib3dsLight* light = lib3ds_light_new(name.c_str());
    light->spot_light = LIB3DS_TRUE;
    SetVector(light->position, aim.position);
    SetVector(light->spot, aim.target);
    SetVector(light->color, color);
    light->multiplier = multiplier;
    light->hot_spot = cone.hotspotDeg;
    light->fall_off = cone.falloffDeg;
    lib3ds_file_insert_light(m_file.get(), light);
    Lib3dsNode* node = lib3ds_node_new_light();
    AddKey(node->data.light.pos_track, 0, aim.position);
    AddKey(node->data.light.col_track, 0, color);
    AddKey(node->data.light.hotspot_track, 0, cone.hotspotDeg);
    AddKey(node->data.light.falloff_track, 0, cone.falloffDeg);
    AddKey(node->data.light.roll_track, 0, 0);
    Insert(*node, nullptr, name);
    Lib3dsNode* target = lib3ds_node_new_spot();
    AddKey(target->data.spot.pos_track, 0, aim.target);
    Insert(*target, nullptr, name);
}

void CSceneBuilder::AddCamera(const std::string& name, const CAim& aim, float fovDeg, float rollDeg) {
    AddMovingCamera(name, {aim}, fovDeg);
    lib3ds_file_camera_by_name(m_file.get(), name.c_str())->roll = rollDeg;
    Lib3dsNode* node = lib3ds_file_node_by_name(m_file.get(), name.c_str(), LIB3DS_CAMERA_NODE);
    node->data.camera.roll_track.keyL->value = rollDeg;
}

void CSceneBuilder::AddMovingCamera(const std::string& name, const std::vector<CAim>& aims, float fovDeg) {
    const CAim& first = aims.at(0);
    Lib3dsCamera* camera = lib3ds_camera_new(name.c_str());
    SetVector(camera->position, first.position);
    SetVector(camera->target, first.target);
    camera->fov = fovDeg;
    camera->near_range = 0;
    camera->far_range = 1000;
    lib3ds_file_insert_camera(m_file.get(), camera);
    Lib3dsNode* node = lib3ds_node_new_camera();
    Lib3dsNode* target = lib3ds_node_new_target();
    for (std::size_t i = 0; i < aims.size(); ++i) {
        const auto steps = static_cast<int>(std::max<std::size_t>(aims.size() - 1, 1));
        const int frame = m_file->frames * static_cast<int>(i) / steps;
        AddKey(node->data.camera.pos_track, frame, aims[i].position);
        AddKey(target->data.target.pos_track, frame, aims[i].target);
    }
    AddKey(node->data.camera.fov_track, 0, fovDeg);
    AddKey(node->data.camera.roll_track, 0, 0);
    Insert(*node, nullptr, name);
    Insert(*target, nullptr, name);
}

void CSceneBuilder::Bake() {
    // Only reading readies the keys for evaluation.
    for (Lib3dsNode* object : m_objects) lib3ds_quat_track_setup(&object->data.object.rot_track);
    lib3ds_file_eval(m_file.get(), 0);
    for (const auto& [mesh, mirrored] : m_meshes) {
        const auto shows = [&mesh = *mesh](const Lib3dsNode* node) {
            return std::strcmp(node->name, mesh.name) == 0;
        };
        const auto node = std::find_if(m_objects.begin(), m_objects.end(), shows);
        lib3ds_matrix_identity(mesh->matrix);
        if (node != m_objects.end()) {
            lib3ds_matrix_copy(mesh->matrix, (*node)->matrix);
            const float* pivot = (*node)->data.object.pivot;
            lib3ds_matrix_translate_xyz(mesh->matrix, -pivot[0], -pivot[1], -pivot[2]);
        }
        // lib3ds turns the points of a mirrored matrix over when it writes, so they go in
        // turned over already.
        if (mirrored) lib3ds_matrix_scale_xyz(mesh->matrix, -1, 1, 1);
        for (Lib3dsDword i = 0; i < mesh->points; ++i) {
            Lib3dsVector world;
            lib3ds_vector_transform(world, mesh->matrix, mesh->pointL[i].pos);
            lib3ds_vector_copy(mesh->pointL[i].pos, world);
        }
    }
}

void CSceneBuilder::Save(const std::filesystem::path& path) {
    Bake();
    CLib3dsMemoryWriter writer;
    const bool written = lib3ds_file_write(m_file.get(), writer.Io()) != 0;
    std::vector<std::byte> bytes = writer.Bytes();
    WriteMorphTracks(*m_file, bytes);
    if (!written || !file_util_ex::WriteFileAtomically(path.native(), bytes))
        throw std::runtime_error("could not write " + path.string());
}
