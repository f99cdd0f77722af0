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

/** The transform `linear` about another point than the origin, then a shift. The translation is computed in
 * double: far from the origin its parts are much larger than their sum. */
CMat4 About(CMat4 linear, CVec3d center, CVec3d shift = {}) {
    const CVec3d moved = center - CMatrix4d::From(linear).TransformDirection(center) + shift;
    linear.m[12] = static_cast<float>(moved.x);
    linear.m[13] = static_cast<float>(moved.y);
    linear.m[14] = static_cast<float>(moved.z);
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

CVec3d CSeenView::TurningPoint() const {
    return InDouble(camera.Target()) + aside;
}

CVec3 CSeenView::BallCenter() const {
    return InFloat(TurningPoint() + shift);
}

CMat4 CSeenView::BallMatrix() const {
    return CMat4::Translation(BallCenter() + InFloat(pivot)) * CMat4::Scale(InFloat(scale));
}

CMat4 CSeenView::PlacingMatrix() const {
    return About(CMat4::Scale(InFloat(scale)) * turn.Matrix(), TurningPoint() + pivot, shift);
}

CMat4 CSeenView::AnglesMatrix() const {
    return About(RotationOfAngles(rotX, rotY, rotZ), TurningPoint());
}

CDepthRange CSeenView::DepthRange(const CSphere& model, std::span<const CSphere> others) const {
    const CDepthRange range = camera.DepthRange(model, others);
    const CMat4 placing = ModelMatrix();
    if (placing == CMat4{} && !(orbit > 0)) return range;
    std::vector<CSphere> spheres(others.begin(), others.end());
    spheres.push_back(model);
    return WidenedFor(range, ProjectionMatrix(range) * ViewMatrix(), placing, spheres);
}

/** How far before the eye the middle of the model is seen. The look-at point stands in for one that is behind
 * the eye or close to it, where a pixel would mean next to nothing. */
double CSeenView::MiddleDepth() const {
    constexpr double kNearest = 0.05;
    const CVec3 middle = ModelMatrix().TransformPoint(camera.ModelCenter());
    const double depth = -static_cast<double>(ViewMatrix().TransformPoint(middle).z);
    const double distance = camera.Distance();
    return depth > kNearest * distance && std::isfinite(depth) ? depth : distance;
}

void CSeenView::Pan(double dx, double dy) {
    const double depth = MiddleDepth();
    ShiftAcross(dx * depth, dy * depth);
}

void CSeenView::ZoomAt(int step, double x, double y) {
    const double before = camera.Distance();
    camera.Zoom(step);
    // As if the eye went along the ray through (x, y): what lies on that ray, near or far, stays there.
    const double approached = before - camera.Distance();
    ShiftAcross((camera.ViewWidth() / 2 - x) * approached, (camera.ViewHeight() / 2 - y) * approached);
}

/** Shifts the scene across the line of sight, by pixels times the depth at which they are counted. */
void CSeenView::ShiftAcross(double right, double down) {
    const CMatrix4d view = CMatrix4d::From(ViewMatrix());
    const double scale = 2 * camera.TanHalfFovY() / camera.ViewHeight();
    const auto axis = [&view](std::size_t row) {
        return CVec3d{view.m[row], view.m[row + 4], view.m[row + 8]};
    };
    const CVec3d moved = shift + axis(0) * (right * scale) - axis(1) * (down * scale);
    if (IsFinite(moved)) shift = moved;
}

bool CSeenView::ZoomTo(const C2DRect& box) {
    bool isInvertible = false;
    const CMatrix4d back = CMatrix4d::From(ModelMatrix()).AffineInverse(&isInvertible);
    if (!camera.Zoom(box)) return false;
    if (isInvertible) TurnAbout(back.TransformPoint(InDouble(camera.Target())));
    return true;
}

void CSeenView::CenterOn(CVec3d point) {
    if (!IsFinite(point)) return;
    camera.SetDistance(-(ViewMatrix() * ModelMatrix()).TransformPoint(InFloat(point)).z);
    TurnAbout(point);
}

/** A point of the scene becomes the turning point, and is seen at the look-at point. */
void CSeenView::TurnAbout(CVec3d point) {
    const CVec3d target = InDouble(camera.Target());
    const CMatrix4d linear = CMatrix4d::From(CMat4::Scale(InFloat(scale)) * turn.Matrix());
    aside = point - target;
    shift = target - (point + pivot - linear.TransformDirection(pivot));
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
