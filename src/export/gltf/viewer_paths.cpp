// SPDX-License-Identifier: MIT
#include "export/gltf/viewer_paths.h"

#include "export/gltf/CGltfViewers.h"
#include "export/gltf/parts/CGltfTransform.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/prepare_scene.h"

namespace {

/** The nodes that viewers hang on, up to the roots. */
class CFollowedNodes {
  public:
    CFollowedNodes(const CPreparedScene& scene, std::span<const CGltfViewer> viewers)
        : m_scene(scene),
          m_needed(scene.nodes.size()),
          m_moves(scene.nodes.size()),
          m_world(scene.nodes.size()) {
        for (const CGltfViewer& viewer : viewers) {
            if (viewer.eye >= 0) m_needed[static_cast<std::size_t>(viewer.eye)] = true;
            if (viewer.target >= 0) m_needed[static_cast<std::size_t>(viewer.target)] = true;
        }
        for (std::size_t n = m_needed.size(); n-- > 0;) {
            const CPreparedNode& node = scene.nodes[n];
            if (m_needed[n] && node.parent >= 0 && !node.isPlacedByMesh)
                m_needed[static_cast<std::size_t>(node.parent)] = true;
        }
        for (std::size_t n = 0; n < m_needed.size(); ++n) {
            const CPreparedNode& node = scene.nodes[n];
            if (!m_needed[n] || node.isPlacedByMesh) continue;
            const CKeyCounts keys = KeyCountsOf(node);
            m_moves[n] = keys.position > 1 || keys.turn > 1 || keys.scale > 1 ||
                         (node.parent >= 0 && m_moves[static_cast<std::size_t>(node.parent)]);
        }
    }

    [[nodiscard]] bool Moves(int node) const { return node >= 0 && m_moves[static_cast<std::size_t>(node)]; }

    void Evaluate(float frame) {
        for (std::size_t n = 0; n < m_needed.size(); ++n) {
            if (!m_needed[n]) continue;
            const CPreparedNode& node = m_scene.nodes[n];
            if (node.isPlacedByMesh) {
                m_world[n] = CMatrix4d::From(node.fixedWorld);
                continue;
            }
            const CNodePose pose = PoseOf(node, frame);
            m_world[n] = CGltfTransform{pose.position, pose.turn, pose.scale}.Matrix();
            if (node.parent >= 0) m_world[n] = m_world[static_cast<std::size_t>(node.parent)] * m_world[n];
        }
    }
    [[nodiscard]] CVec3 PlaceOf(int node, CVec3 without) const {
        if (node < 0) return without;
        const CVec3d place = m_world[static_cast<std::size_t>(node)].TransformPoint({});
        const CVec3 result{static_cast<float>(place.x), static_cast<float>(place.y),
                           static_cast<float>(place.z)};
        return IsFinite(result) ? result : without;
    }
    [[nodiscard]] float RollOf(int node, float frame, float without) const {
        if (node < 0) return without;
        const CPreparedNode& eye = m_scene.nodes[static_cast<std::size_t>(node)];
        const bool hasRoll = eye.kind == ENodeKind::Camera && KeyCountsOf(eye).turn > 0;
        return hasRoll ? PoseOf(eye, frame).rollDeg : without;
    }

  private:
    const CPreparedScene& m_scene;
    std::vector<bool> m_needed, m_moves;
    std::vector<CMatrix4d> m_world;
};

}  // namespace

std::vector<CViewerPath> ViewerPaths(const CPreparedScene& scene, std::span<const CGltfViewer> viewers,
                                     std::span<const float> frames) {
    constexpr std::size_t kMostPoses = 4'000'000;
    CFollowedNodes nodes(scene, viewers);
    std::vector<CViewerPath> paths;
    for (std::size_t v = 0; v < viewers.size(); ++v) {
        const bool moves = nodes.Moves(viewers[v].eye) || nodes.Moves(viewers[v].target);
        if (moves && (paths.size() + 1) * frames.size() <= kMostPoses) paths.push_back({v, {}});
    }
    if (paths.empty()) return paths;
    for (const float frame : frames) {
        nodes.Evaluate(frame);
        for (CViewerPath& path : paths) {
            const CGltfViewer& viewer = viewers[path.viewer];
            path.poses.push_back({nodes.PlaceOf(viewer.eye, viewer.position),
                                  nodes.PlaceOf(viewer.target, viewer.targetPosition),
                                  nodes.RollOf(viewer.eye, frame, viewer.rollDeg)});
        }
    }
    return paths;
}
