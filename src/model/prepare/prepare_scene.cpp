// SPDX-License-Identifier: MIT
#include "model/prepare/prepare_scene.h"

#include <lib3ds/file.h>
#include <lib3ds/node.h>

#include <algorithm>

#include "base/jobs/parallel_for.h"
#include "model/prepare/facing.h"
#include "model/prepare/load_textures.h"
#include "model/prepare/node_steps.h"
#include "model/prepare/prepare_materials.h"
#include "model/prepare/prepare_mesh.h"
#include "model/prepare/resolve_placement.h"
#include "model/scene/CScene.h"

namespace {
std::size_t BytesOf(const CPreparedMesh& mesh) {
    return mesh.vertices.size() * sizeof mesh.vertices[0] + mesh.texCoords.size() * sizeof mesh.texCoords[0] +
           mesh.IndexCount() * sizeof(std::uint32_t);
}

void PrepareMeshes(const CScene& scene, const CPrepareOptions& options, CPreparedScene& prepared) {
    const std::vector<bool> mapped = MappedMaterials(prepared);
    const std::vector<CMeshView>& views = scene.Meshes();
    prepared.meshes.resize(views.size());
    std::atomic<std::size_t> done{0};
    ParallelFor(views.size(), options.threads, [&](std::size_t i) {
        if (options.IsStopped()) return;
        prepared.meshes[i] =
            options.outlines ? PrepareOutline(views[i]) : PrepareMappedMesh(views[i], mapped);
        options.Spend(BytesOf(prepared.meshes[i]));
        ++done;
        if (options.progress)
            options.progress->SetShare(static_cast<double>(done) / static_cast<double>(views.size()));
    });
}

/** Frames at which some track of the tree has a key; animated when there are several, or a hide key. */
class CKeyRange {
  public:
    template <class Track>
    void Add(const Track& track) {
        int first = 0, count = 0;
        for (const auto* key = track.keyL; key; key = key->next, ++count) {
            if (count == 0) first = key->tcb.frame;
            m_last = std::max(m_last, key->tcb.frame);
            m_first = std::min(m_first, first);
        }
        m_animated |= count > 1;
    }
    void AddNode(const Lib3dsNode& node) {
        switch (node.type) {
            case LIB3DS_OBJECT_NODE:
                Add(node.data.object.pos_track);
                Add(node.data.object.rot_track);
                Add(node.data.object.scl_track);
                Add(node.data.object.hide_track);
                break;
            case LIB3DS_CAMERA_NODE:
                Add(node.data.camera.pos_track);
                Add(node.data.camera.fov_track);
                Add(node.data.camera.roll_track);
                break;
            case LIB3DS_TARGET_NODE:
                Add(node.data.target.pos_track);
                break;
            case LIB3DS_LIGHT_NODE:
                Add(node.data.light.pos_track);
                Add(node.data.light.col_track);
                Add(node.data.light.hotspot_track);
                Add(node.data.light.falloff_track);
                break;
            case LIB3DS_SPOT_NODE:
                Add(node.data.spot.pos_track);
                break;
            case LIB3DS_AMBIENT_NODE:
                Add(node.data.ambient.col_track);
                break;
            default:
                break;
        }
    }
    [[nodiscard]] bool IsAnimated() const { return m_animated; }
    [[nodiscard]] int First() const { return m_first; }
    [[nodiscard]] int Last() const { return m_last; }

  private:
    bool m_animated = false;
    int m_first = 0, m_last = 0;
};

}  // namespace

void FindFrames(const CScene& scene, CPreparedScene& prepared) {
    CKeyRange keys;
    for (const CPreparedNode& node : prepared.nodes) {
        if (node.source) keys.AddNode(*node.source);
        if (!node.morph.keys.empty()) keys.Add(node.source->data.object.morph_track);
    }
    const Lib3dsFile& file = *scene.Header();
    prepared.animated = keys.IsAnimated();
    const bool segmentFits = file.segment_to > file.segment_from && file.segment_from <= keys.Last() &&
                             file.segment_to >= keys.First();
    prepared.firstFrame = static_cast<float>(segmentFits ? file.segment_from : keys.First());
    prepared.lastFrame = static_cast<float>(segmentFits ? file.segment_to : keys.Last());
}

void CountParts(const CScene& scene, CPreparedScene& prepared) {
    prepared.triangleCount = prepared.vertexCount = 0;
    for (const CPreparedNode& node : prepared.nodes) {
        if (node.mesh >= 0 && !node.isLeftOut)
            prepared.triangleCount += prepared.meshes[static_cast<std::size_t>(node.mesh)].IndexCount() / 3;
    }
    for (const CMeshView& view : scene.Meshes()) {
        if (view.isInFile) prepared.vertexCount += view.pointCount;
    }
}

CPreparedScene PrepareScene(const CScene& scene, const CPrepareOptions& options) {
    CPreparedScene prepared;
    const Lib3dsFile& file = *scene.Header();
    prepared.notes = scene.Notes();
    prepared.sourceFiles = scene.SourceFiles();
    prepared.ambientLight = {file.ambient[0], file.ambient[1], file.ambient[2]};
    prepared.hasBackgroundColor = file.background.solid.use != 0;
    prepared.backgroundColor = {file.background.solid.col[0], file.background.solid.col[1],
                                file.background.solid.col[2]};
    PrepareMaterials(scene, prepared);
    PrepareMeshes(scene, options, prepared);
    if (options.IsStopped()) return prepared;
    if (options.loadTextures) LoadTextures(scene, options, prepared);
    if (options.IsStopped()) return prepared;
    DecideLooks(options.loadTextures, prepared);
    PrepareNodes(scene, prepared);
    FindFrames(scene, prepared);
    CountParts(scene, prepared);
    const float frame =
        std::clamp(static_cast<float>(file.current_frame), prepared.firstFrame, prepared.lastFrame);
    EvaluateNodes(prepared, scene, frame, options.threads);
    if (ResolveMirroring(prepared)) EvaluateNodes(prepared, scene, frame, options.threads);
    if (ResolvePlacedTwice(prepared)) EvaluateNodes(prepared, scene, frame, options.threads);
    ShowBothSidesIfTurnedAway(prepared);
    JoinHeadlightIfDark(prepared);
    return prepared;
}
