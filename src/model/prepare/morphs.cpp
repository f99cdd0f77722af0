// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <utility>

#include "base/jobs/parallel_for.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/node_steps.h"
#include "model/prepare/prepare_materials.h"
#include "model/prepare/prepare_mesh.h"
#include "model/prepare/prepare_scene.h"
#include "model/scene/CScene.h"
#include "model/scene/mesh_access.h"

CMorphShape MorphShapeAt(const CPreparedMorph& morph, float frame) {
    const std::vector<CMorphKey>& keys = morph.keys;
    const float first = keys.front().frame, last = keys.back().frame;
    if (morph.repeats && frame > last && last > first) frame = std::fmod(frame - first, last - first) + first;
    const auto next = std::upper_bound(keys.begin(), keys.end(), frame,
                                       [](float value, const CMorphKey& key) { return value < key.frame; });
    if (next == keys.begin()) return {keys.front().mesh, keys.front().mesh, 0};
    const CMorphKey& before = *(next - 1);
    if (next == keys.end() || before.mesh == next->mesh) return {before.mesh, before.mesh, 0};
    return {before.mesh, next->mesh, (frame - before.frame) / (next->frame - before.frame)};
}

namespace {
/** The points of one shape, carried to where the mesh has them that takes the shape. */
std::vector<CVec3> PointsOf(const CMeshView& shape, const CMeshView& of) {
    const CMat4 inFile = shape.pointsUnflipped ? CMat4{} : FlipOf(shape.matrix);
    const CMat4 carry = shape.mesh == of.mesh ? inFile : of.matrix * shape.matrix.AffineInverse() * inFile;
    std::vector<CVec3> points(shape.pointCount);
    for (std::size_t i = 0; i < points.size(); ++i) points[i] = carry.TransformPoint(PointOf(shape, i));
    return points;
}

std::vector<CVec3> Blended(const CScene& scene, const CMeshView& mesh, const CMorphShape& shape) {
    std::vector<CVec3> points = PointsOf(scene.Meshes()[shape.from], mesh);
    if (shape.from == shape.to) return points;
    const std::vector<CVec3> to = PointsOf(scene.Meshes()[shape.to], mesh);
    for (std::size_t i = 0; i < points.size(); ++i) points[i] = points[i] + (to[i] - points[i]) * shape.share;
    return points;
}

/** False where an edit has given the node another mesh, or where the shapes no longer fit. */
bool CanTake(const CScene& scene, const CPreparedScene& prepared, const CPreparedNode& node,
             const CMorphShape& shape) {
    const std::vector<CMeshView>& views = scene.Meshes();
    const auto mesh = static_cast<std::size_t>(node.mesh);
    const auto fits = [&](std::size_t of) {
        return of < views.size() && views[of].pointCount == views[mesh].pointCount;
    };
    return prepared.meshes[mesh].stamp != 0 && fits(shape.from) && fits(shape.to);
}

CPreparedMesh MakeShape(const CScene& scene, const CPreparedScene& prepared, const std::vector<bool>& mapped,
                        const CPreparedNode& node, const CMorphShape& shape) {
    const auto number = static_cast<std::size_t>(node.mesh);
    const CPreparedMesh& mesh = prepared.meshes[number];
    CMeshView view = scene.Meshes()[number];
    const std::vector<CVec3> points = Blended(scene, view, shape);
    view.points = reinterpret_cast<const std::byte*>(points.data());
    view.pointStride = sizeof(CVec3);
    view.pointsUnflipped = true;
    CPreparedMesh made = PrepareMappedMesh(view, mapped);
    made.name = mesh.name;
    made.toLocal = mesh.toLocal;  // decided once, when the scene was opened
    return made;
}

void TakeShape(const CScene& scene, CPreparedScene& prepared, const std::vector<bool>& mapped,
               CPreparedNode& node, const CMorphShape& shape) {
    CPreparedMesh& mesh = prepared.meshes[static_cast<std::size_t>(node.mesh)];
    mesh = MakeShape(scene, prepared, mapped, node, shape);
    node.morph.shape = shape;
    node.morph.stamp = mesh.stamp;
}
}  // namespace

std::optional<CPreparedMesh> ShapedMesh(const CScene& scene, const CPreparedScene& prepared,
                                        const CPreparedNode& node, const CMorphShape& shape) {
    if (node.mesh < 0 || !CanTake(scene, prepared, node, shape)) return std::nullopt;
    return MakeShape(scene, prepared, MappedMaterials(prepared), node, shape);
}

std::vector<bool> MappedMaterials(const CPreparedScene& prepared) {
    std::vector<bool> mapped;
    for (const CPreparedMaterial& material : prepared.materials) mapped.push_back(UsesTexCoords(material));
    return mapped;
}

CPreparedMesh PrepareMappedMesh(const CMeshView& view, const std::vector<bool>& mapped) {
    const auto usesMap = [&](std::uint16_t m) { return m != CMeshView::kNoMaterial && mapped[m]; };
    const auto& used = view.faceMaterials;
    return PrepareMesh(view, static_cast<std::uint32_t>(mapped.size() - 1),
                       std::any_of(used.begin(), used.end(), usesMap));
}

void EvaluateMorphs(CPreparedScene& prepared, const CScene& scene, float frame, unsigned threads) {
    std::vector<std::pair<CPreparedNode*, CMorphShape>> changing;
    for (CPreparedNode& node : prepared.nodes) {
        if (node.morph.keys.empty() || node.mesh < 0) continue;
        const CMorphShape shape = MorphShapeAt(node.morph, frame);
        const auto mesh = static_cast<std::size_t>(node.mesh);
        const bool hasIt = node.morph.shape == shape && node.morph.stamp == prepared.meshes[mesh].stamp;
        if (!hasIt && CanTake(scene, prepared, node, shape)) changing.emplace_back(&node, shape);
    }
    if (changing.empty()) return;
    ++prepared.shapeChanges;
    const std::vector<bool> mapped = MappedMaterials(prepared);
    ParallelFor(changing.size(), threads, [&](std::size_t i) {
        TakeShape(scene, prepared, mapped, *changing[i].first, changing[i].second);
    });
}
