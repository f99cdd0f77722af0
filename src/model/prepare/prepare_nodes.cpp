// SPDX-License-Identifier: MIT
#include "model/prepare/node_steps.h"

#include <lib3ds/camera.h>
#include <lib3ds/file.h>
#include <lib3ds/light.h>
#include <lib3ds/mesh.h>
#include <lib3ds/node.h>

#include <algorithm>
#include <cctype>
#include <string_view>

#include "base/name_hash.h"
#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "model/scene/CNoteList.h"
#include "model/scene/CScene.h"
#include "model/scene/scene_budget.h"
#include "model/scene/unique_names.h"

namespace {
constexpr std::string_view kDummyName = "$$$DUMMY";

/** Finds the mesh that a node names. Some exporters cut node names to ten characters or change their case. */
class CMeshFinder {
  public:
    explicit CMeshFinder(const std::vector<CPreparedMesh>& meshes) {
        for (std::size_t i = 0; i < meshes.size(); ++i) {
            m_exact.emplace(meshes[i].name, static_cast<int>(i));
            AddLoose(ascii_text::Lowered(meshes[i].name), static_cast<int>(i));
            if (meshes[i].name.size() > kShortName)
                AddLoose(ascii_text::Lowered(meshes[i].name.substr(0, kShortName)), static_cast<int>(i));
        }
    }
    [[nodiscard]] int Find(const std::string& name) const {
        if (const auto found = m_exact.find(name); found != m_exact.end()) return found->second;
        const auto loose = m_loose.find(ascii_text::Lowered(name));
        return loose == m_loose.end() ? -1 : loose->second;
    }

  private:
    static constexpr std::size_t kShortName = 10;
    static constexpr int kAmbiguous = -1;

    void AddLoose(std::string key, int mesh) {
        const auto [place, isNew] = m_loose.emplace(std::move(key), mesh);
        if (!isNew && place->second != mesh) place->second = kAmbiguous;
    }

    CNameMap<int> m_exact;
    CNameMap<int> m_loose;
};

ENodeKind KindOf(const Lib3dsNode& node) {
    switch (node.type) {
        case LIB3DS_OBJECT_NODE:
            return node.name == kDummyName ? ENodeKind::Dummy : ENodeKind::Object;
        case LIB3DS_CAMERA_NODE:
            return ENodeKind::Camera;
        case LIB3DS_TARGET_NODE:
            return ENodeKind::CameraTarget;
        case LIB3DS_LIGHT_NODE:
            return ENodeKind::Light;
        case LIB3DS_SPOT_NODE:
            return ENodeKind::SpotTarget;
        default:
            return ENodeKind::Ambient;
    }
}

std::string DisplayName(const Lib3dsNode& node) {
    if (node.type != LIB3DS_OBJECT_NODE || !node.data.object.instance[0]) return node.name;
    if (node.name == kDummyName) return node.data.object.instance;
    return std::string(node.name) + "." + node.data.object.instance;
}

bool HasNoKeys(const Lib3dsObjectData& data) {
    return !data.pos_track.keyL && !data.rot_track.keyL && !data.scl_track.keyL;
}

/** The place of a mesh that no keys place: its points are drawn where the file has them. */
CMat4 PlaceOfMesh(const CMat4& matrix) {
    bool invertible = false;
    (void)matrix.AffineInverse(&invertible);
    return invertible ? matrix : CMat4{};
}

class CNodePreparer {
  public:
    CNodePreparer(const CScene& scene, CPreparedScene& prepared)
        : m_scene(scene), m_prepared(prepared), m_finder(prepared.meshes), m_shown(prepared.meshes.size()) {}

    void Run() {
        AddTree();
        AddMeshesWithoutNode();
        AddMorphs();
        HideMorphTargets();
        KeepToBudget();
        NoteHidden();
        AddLights();
        AddCameras();
    }

  private:
    void AddTree();
    void AddNode(Lib3dsNode& node, int parent);
    void AddMorphs();
    [[nodiscard]] std::vector<CMorphKey> MorphKeys(const CPreparedNode& node);
    void HideMorphTargets();
    void SetMesh(const Lib3dsNode& source, CPreparedNode& node);
    void AddMeshesWithoutNode();
    void KeepToBudget();
    void NoteHidden();
    void AddLights();
    void AddCameras();

    const CScene& m_scene;
    CPreparedScene& m_prepared;
    CMeshFinder m_finder;
    std::vector<bool> m_shown;
    CUniqueNames m_names;
    CNameSet m_morphTargets;
    CNoteList m_notes;
};

/** In file order, parents first; without recursion, as trees may be deep. */
void CNodePreparer::AddTree() {
    struct CPending {
        Lib3dsNode* node;
        int parent;
    };
    std::vector<CPending> pending;
    const auto push = [&pending](Lib3dsNode* first, int parent) {
        const std::size_t begin = pending.size();
        for (Lib3dsNode* node = first; node; node = node->next) pending.push_back({node, parent});
        std::reverse(pending.begin() + static_cast<std::ptrdiff_t>(begin), pending.end());
    };
    push(m_scene.Header()->nodes, -1);
    while (!pending.empty()) {
        const CPending next = pending.back();
        pending.pop_back();
        AddNode(*next.node, next.parent);
        push(next.node->childs, static_cast<int>(m_prepared.nodes.size()) - 1);
    }
}

void CNodePreparer::AddNode(Lib3dsNode& source, int parent) {
    CPreparedNode node;
    node.kind = KindOf(source);
    node.parent = parent;
    node.source = &source;
    node.name = DisplayName(source);
    if (node.kind == ENodeKind::Object || node.kind == ENodeKind::Dummy) node.name = m_names.Take(node.name);
    if (node.kind == ENodeKind::Object) SetMesh(source, node);
    m_prepared.nodes.push_back(std::move(node));
}

void CNodePreparer::SetMesh(const Lib3dsNode& source, CPreparedNode& node) {
    const Lib3dsObjectData& data = source.data.object;
    for (const Lib3dsMorphKey* key = data.morph_track.keyL; key; key = key->next)
        m_morphTargets.insert(key->name);
    node.mesh = m_finder.Find(source.name);
    if (node.mesh < 0) return;
    const auto mesh = static_cast<std::size_t>(node.mesh);
    m_shown[mesh] = true;
    if (HasNoKeys(data)) {
        node.isPlacedByMesh = true;
        node.fixedWorld = PlaceOfMesh(m_scene.Meshes()[mesh].matrix);
        node.meshToNode = m_prepared.meshes[mesh].toLocal;
    } else {
        node.pivot = {data.pivot[0], data.pivot[1], data.pivot[2]};
        node.meshToNode = CMat4::Translation(-node.pivot) * m_prepared.meshes[mesh].toLocal;
    }
}

void CNodePreparer::AddMeshesWithoutNode() {
    for (std::size_t i = 0; i < m_prepared.meshes.size(); ++i) {
        const CPreparedMesh& mesh = m_prepared.meshes[i];
        if (m_shown[i] || m_morphTargets.contains(mesh.name)) continue;
        CPreparedNode node;
        node.name = m_names.Take(mesh.name);
        node.mesh = static_cast<int>(i);
        node.isPlacedByMesh = true;
        node.fixedWorld = PlaceOfMesh(m_scene.Meshes()[i].matrix);
        node.meshToNode = mesh.toLocal;
        m_prepared.nodes.push_back(std::move(node));
    }
}

/** The keys of a node's track whose shapes are there and have as many points as its mesh. */
std::vector<CMorphKey> CNodePreparer::MorphKeys(const CPreparedNode& node) {
    std::vector<CMorphKey> keys;
    const auto& views = m_scene.Meshes();
    for (const Lib3dsMorphKey* key = node.source->data.object.morph_track.keyL; key; key = key->next) {
        const int shape = m_finder.Find(key->name);
        const char* fault =
            shape < 0 ? lng::Mark("A shape that an object should change into is missing")
            : views[static_cast<std::size_t>(shape)].pointCount !=
                    views[static_cast<std::size_t>(node.mesh)].pointCount
                ? lng::Mark("A shape that an object should change into has another number of points")
                : nullptr;
        if (fault)
            m_notes.Add({CSceneNote::EKind::Limited, fault, CNoteList::Printable(key->name)});
        else
            keys.push_back({static_cast<float>(key->tcb.frame), static_cast<std::size_t>(shape)});
    }
    return keys;
}

void CNodePreparer::AddMorphs() {
    std::vector<std::uint32_t> users(m_prepared.meshes.size());
    for (const CPreparedNode& node : m_prepared.nodes) {
        if (node.mesh >= 0) ++users[static_cast<std::size_t>(node.mesh)];
    }
    std::size_t pointsLeft = scene_budget::kMorphPoints, nodesLeft = scene_budget::kMorphingNodes;
    for (CPreparedNode& node : m_prepared.nodes) {
        if (node.kind != ENodeKind::Object || node.mesh < 0 || !node.source) continue;
        if (!node.source->data.object.morph_track.keyL) continue;
        const auto mesh = static_cast<std::size_t>(node.mesh);
        const std::size_t points = m_scene.Meshes()[mesh].pointCount;
        if (users[mesh] > 1 || points > pointsLeft || nodesLeft == 0) {
            m_notes.Limited("An object does not change its shape", CNoteList::Printable(node.name));
            continue;
        }
        node.morph.keys = MorphKeys(node);
        node.morph.repeats = (node.source->data.object.morph_track.flags & LIB3DS_REPEAT) != 0;
        if (node.morph.keys.empty()) continue;
        pointsLeft -= points;
        --nodesLeft;
    }
    for (CSceneNote& note : m_notes.Take()) m_prepared.notes.push_back(std::move(note));
}

/** The shapes that others change into are not drawn beside them, as long as they do not change themselves. */
void CNodePreparer::HideMorphTargets() {
    std::vector<bool> isShape(m_prepared.meshes.size());
    for (const CPreparedNode& node : m_prepared.nodes) {
        for (const CMorphKey& key : node.morph.keys) isShape[key.mesh] = true;
    }
    for (CPreparedNode& node : m_prepared.nodes) {
        if (node.mesh >= 0 && node.morph.keys.empty() && isShape[static_cast<std::size_t>(node.mesh)])
            node.isLeftOut = true;
    }
}

/** A small file can name one large mesh, or one of many materials, in thousands of nodes. */
void CNodePreparer::KeepToBudget() {
    std::uint64_t triangles = scene_budget::kDrawnTriangles, batches = scene_budget::kDrawnBatches;
    std::size_t left = 0;
    for (CPreparedNode& node : m_prepared.nodes) {
        if (node.mesh < 0 || node.isLeftOut) continue;
        const CPreparedMesh& mesh = m_prepared.meshes[static_cast<std::size_t>(node.mesh)];
        const std::uint64_t ownTriangles = mesh.IndexCount() / 3, ownBatches = mesh.batches.size();
        node.isLeftOut = ownTriangles > triangles || ownBatches > batches;
        if (node.isLeftOut) {
            ++left;
            continue;
        }
        triangles -= ownTriangles;
        batches -= ownBatches;
    }
    if (left == 0) return;
    m_prepared.notes.push_back({CSceneNote::EKind::Limited,
                                lng::Mark("Objects beyond 36 million drawn triangles are not shown"),
                                std::to_string(left)});
}

/** Authors hide parts to work on others; whoever opens the file wants to see all of it. */
void CNodePreparer::NoteHidden() {
    const auto isHidden = [this](const CPreparedNode& node) {
        if (node.mesh < 0) return false;
        return (node.source && (node.source->flags1 & LIB3DS_HIDDEN) != 0) ||
               (m_scene.Meshes()[static_cast<std::size_t>(node.mesh)].mesh->object_flags &
                LIB3DS_OBJECT_HIDDEN) != 0;
    };
    const auto count = std::count_if(m_prepared.nodes.begin(), m_prepared.nodes.end(), isHidden);
    if (count == 0) return;
    m_prepared.notes.push_back({CSceneNote::EKind::Limited,
                                lng::Mark("Objects that the file marks as hidden are shown"),
                                std::to_string(count)});
}

void CNodePreparer::AddLights() {
    for (const Lib3dsLight* light = m_scene.Header()->lights; light; light = light->next) {
        CPreparedLight result;
        result.name = light->name;
        result.spot = light->spot_light != 0;
        result.off = light->off != 0;
        result.position = {light->position[0], light->position[1], light->position[2]};
        result.target = {light->spot[0], light->spot[1], light->spot[2]};
        result.color = {light->color[0], light->color[1], light->color[2]};
        // lib3ds writes 0 for a light that nobody gave a multiplier; a light that is meant to be dark is off.
        result.multiplier = light->multiplier == 0 ? 1 : light->multiplier;
        result.hotspotDeg = light->hot_spot;
        result.falloffDeg = light->fall_off;
        result.attenuate = light->attenuation != 0 && light->outer_range > 0;
        result.innerRange = std::min(light->inner_range, light->outer_range);
        result.outerRange = light->outer_range;
        m_prepared.lights.push_back(std::move(result));
    }
}

void CNodePreparer::AddCameras() {
    for (const Lib3dsCamera* camera = m_scene.Header()->cameras; camera; camera = camera->next) {
        CPreparedCamera result;
        result.name = camera->name;
        result.position = {camera->position[0], camera->position[1], camera->position[2]};
        result.target = {camera->target[0], camera->target[1], camera->target[2]};
        result.rollDeg = camera->roll;
        result.fovDeg = camera->fov;
        result.nearRange = camera->near_range;
        result.farRange = camera->far_range;
        m_prepared.cameras.push_back(std::move(result));
    }
}
}  // namespace

void PrepareNodes(const CScene& scene, CPreparedScene& prepared) {
    CNodePreparer(scene, prepared).Run();
}
