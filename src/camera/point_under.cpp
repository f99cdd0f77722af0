// SPDX-License-Identifier: MIT
#include "camera/point_under.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "camera/CSeenView.h"
#include "model/prepare/CPreparedScene.h"

namespace {

/** Points origin + way * depth, depth counted along the line of sight. */
struct CRay {
    CVec3d origin, way;

    [[nodiscard]] CRay Through(const CMatrix4d& matrix) const {
        return {matrix.TransformPoint(origin), matrix.TransformDirection(way)};
    }
    [[nodiscard]] CVec3d At(double depth) const { return origin + way * depth; }
};

CVec3d InDouble(CVec3 v) {
    return {v.x, v.y, v.z};
}

CRay RayThrough(const CSeenView& seen, double x, double y) {
    const double up = seen.camera.TanHalfFovY(), right = up * seen.camera.Aspect();
    return {{},
            {(2 * x / seen.camera.ViewWidth() - 1) * right, (1 - 2 * y / seen.camera.ViewHeight()) * up, -1}};
}

bool Meets(const CRay& ray, const CBox& box, double farthest) {
    double from = 0, to = farthest;
    for (const auto& [origin, way, low, high] :
         {std::array{ray.origin.x, ray.way.x, double{box.min.x}, double{box.max.x}},
          std::array{ray.origin.y, ray.way.y, double{box.min.y}, double{box.max.y}},
          std::array{ray.origin.z, ray.way.z, double{box.min.z}, double{box.max.z}}}) {
        if (way == 0) {
            if (origin < low || origin > high) return false;
            continue;
        }
        const double a = (low - origin) / way, b = (high - origin) / way;
        from = std::max(from, std::min(a, b));
        to = std::min(to, std::max(a, b));
    }
    // Boxes of flat objects are flat, too: a little tolerance for what was rounded.
    return from <= to + 1e-9 * std::max(1.0, to);
}

/** Where a ray meets a triangle before `nearest`, which it then sets (Möller and Trumbore 1997). */
void Meet(const CRay& ray, CVec3d a, CVec3d b, CVec3d c, bool twoSided, double& nearest) {
    const CVec3d ab = b - a, ac = c - a;
    const CVec3d across = Cross(ray.way, ac);
    const double facing = Dot(ab, across);
    if (facing == 0 || (facing < 0 && !twoSided)) return;
    const CVec3d fromA = ray.origin - a;
    const double u = Dot(fromA, across) / facing;
    if (!(u >= 0 && u <= 1)) return;
    const CVec3d q = Cross(fromA, ab);
    const double v = Dot(ray.way, q) / facing;
    if (!(v >= 0 && u + v <= 1)) return;
    const double depth = Dot(ac, q) / facing;
    if (depth > 0 && depth < nearest) nearest = depth;
}

/** The ray is in the mesh's own coordinates, where front faces are counter-clockwise, mirrored or not. */
void MeetMesh(const CRay& ray, const CPreparedScene& scene, const CPreparedMesh& mesh, double& nearest) {
    if (mesh.vertices.empty()) return;
    for (const CPreparedBatch& batch : mesh.batches) {
        const CPreparedMaterial& material = scene.materials[batch.material];
        if (material.transparency >= 1) continue;
        const auto corner = [&](std::uint32_t i) {
            return InDouble(mesh.vertices[mesh.Index(i)].Position());
        };
        for (std::uint32_t i = batch.firstIndex; i + 2 < batch.firstIndex + batch.indexCount; i += 3)
            Meet(ray, corner(i), corner(i + 1), corner(i + 2), material.twoSided, nearest);
    }
}

}  // namespace

std::optional<CVec3d> PointUnder(const CPreparedScene& scene, const CSeenView& seen, double x, double y) {
    bool isInvertible = false;
    const CMatrix4d toEye = CMatrix4d::From(seen.ViewMatrix()) * CMatrix4d::From(seen.ModelMatrix());
    const CMatrix4d toScene = toEye.AffineInverse(&isInvertible);
    if (!isInvertible) return std::nullopt;
    const CRay ray = RayThrough(seen, x, y).Through(toScene);
    constexpr double kNone = std::numeric_limits<double>::infinity();
    double nearest = kNone;
    for (const CPreparedNode& node : scene.nodes) {
        if (!node.visible || node.mesh < 0 || node.worldBounds.IsEmpty()) continue;
        if (!Meets(ray, node.worldBounds, nearest)) continue;
        const CMatrix4d toMesh = CMatrix4d::From(node.meshToWorld).AffineInverse(&isInvertible);
        if (!isInvertible) continue;
        const auto mesh = static_cast<std::size_t>(node.mesh);
        MeetMesh(ray.Through(toMesh), scene, scene.meshes[mesh], nearest);
    }
    return nearest < kNone ? std::optional(ray.At(nearest)) : std::nullopt;
}
