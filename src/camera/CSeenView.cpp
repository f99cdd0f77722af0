// SPDX-License-Identifier: MIT
#include "camera/CSeenView.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/math/rotation_of_angles.h"

namespace {

CVec3d OrbitAxis(std::string_view cameraName) {
    if (cameraName == "frt_cam") return {0, -1, 0};
    if (cameraName == "top_cam") return {0, 0, 1};
    if (cameraName == "iso_cam") return Normalized(CVec3d{1, -1, 1});
    return {1, 0, 0};
}

CVec3d InDouble(CVec3 v) {
    return {v.x, v.y, v.z};
}
CVec3 InFloat(CVec3d v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

/** The transform `linear` about another point than the origin. The shift is computed in double: far from the
 * origin its parts are much larger than their sum. */
CMat4 About(CMat4 linear, CVec3d center) {
    const auto& m = linear.m;
    const auto moved = [&](std::size_t row, double c) {
        return static_cast<float>(c - (static_cast<double>(m[row]) * center.x +
                                       static_cast<double>(m[row + 4]) * center.y +
                                       static_cast<double>(m[row + 8]) * center.z));
    };
    const CVec3 shift{moved(0, center.x), moved(1, center.y), moved(2, center.z)};
    linear.m[12] = shift.x;
    linear.m[13] = shift.y;
    linear.m[14] = shift.z;
    return linear;
}

}  // namespace

CVec3 CSeenView::Eye() const {
    if (!(orbit > 0)) return camera.Eye();
    const CVec3d view = InDouble(camera.Eye()) - InDouble(camera.Target());
    return camera.Target() + InFloat(OrbitedEye(camera.Name(), orbit, view));
}

CMat4 CSeenView::ViewMatrix() const {
    return orbit > 0 ? camera.ViewMatrixFrom(Eye()) : camera.ViewMatrix();
}

CMat4 CSeenView::BallMatrix() const {
    return CMat4::Translation(camera.Target() + InFloat(pivot)) * CMat4::Scale(InFloat(scale));
}

CMat4 CSeenView::PlacingMatrix() const {
    return About(CMat4::Scale(InFloat(scale)) * turn.Matrix(), InDouble(camera.Target()) + pivot);
}

CMat4 CSeenView::AnglesMatrix() const {
    return About(RotationOfAngles(rotX, rotY, rotZ), InDouble(camera.Target()));
}

CDepthRange CSeenView::DepthRange(const CSphere& model, std::span<const CSphere> others) const {
    const CDepthRange range = camera.DepthRange(model, others);
    const CMat4 placing = ModelMatrix();
    if (placing == CMat4{} && !(orbit > 0)) return range;
    std::vector<CSphere> spheres(others.begin(), others.end());
    spheres.push_back(model);
    return WidenedFor(range, ProjectionMatrix(range) * ViewMatrix(), placing, spheres);
}

CVec3d OrbitedEye(std::string_view cameraName, double angle, CVec3d eye) {
    if (!(angle > 0)) return eye;
    const CVec3d axis = OrbitAxis(cameraName);
    const CVec3d along = axis * Dot(axis, eye);
    return along + (eye - along) * std::cos(angle) + Cross(axis, eye) * std::sin(angle);
}

CDepthRange WidenedFor(CDepthRange range, const CMat4& viewProjection, const CMat4& modelView,
                       std::span<const CSphere> spheres) {
    constexpr float kNearOfFar = 1.0f / 4000.0f;
    const auto& p = viewProjection.m;
    const float unit = Length(CVec3{p[3], p[7], p[11]});
    if (!(unit > 0)) return range;
    float scale = 0;
    for (std::size_t c = 0; c < 12; c += 4)
        scale = std::max(scale, Length(CVec3{modelView.m[c], modelView.m[c + 1], modelView.m[c + 2]}));
    float nearest = range.nearPlane, farthest = range.farPlane;
    for (const CSphere& sphere : spheres) {
        const CVec3 at = modelView.TransformPoint(sphere.center);
        const float depth = (p[3] * at.x + p[7] * at.y + p[11] * at.z + p[15]) / unit;
        const float radius = sphere.radius * scale;
        if (!std::isfinite(depth) || !std::isfinite(radius)) continue;
        nearest = std::min(nearest, depth - radius);
        farthest = std::max(farthest, depth + radius);
    }
    return {std::min(range.nearPlane, std::max(nearest, farthest * kNearOfFar)), farthest};
}
