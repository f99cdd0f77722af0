// SPDX-License-Identifier: MIT
#include "engine/pipeline/CFrameView.h"

#include <cmath>

#include "engine/gl/gl_api.h"

namespace {

CMatrix4d Current(GLenum which) {
    std::array<float, 16> columns{};
    glGetFloatv(which, columns.data());
    return CMatrix4d::From(columns.data());
}

}  // namespace

std::array<std::array<double, 4>, 6> ViewPlanes(const CMatrix4d& clip) {
    const std::array<double, 4> w = clip.Row(3);
    std::array<std::array<double, 4>, 6> planes{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const std::array<double, 4> row = clip.Row(axis);
        for (std::size_t i = 0; i < 4; ++i) {
            planes[axis * 2][i] = w[i] + row[i];
            planes[axis * 2 + 1][i] = w[i] - row[i];
        }
    }
    return planes;
}

CFrameView CFrameView::FromCurrent(CGlCurrent&) {
    return FromMatrices(Current(GL_PROJECTION_MATRIX), Current(GL_MODELVIEW_MATRIX));
}

CFrameView CFrameView::FromMatrices(const CMatrix4d& projection, const CMatrix4d& modelView) {
    CFrameView view;
    view.projection = projection;
    view.modelView = modelView;
    view.planes = ViewPlanes(projection * modelView);
    view.mirrored = modelView.Determinant3() < 0;
    // All lines of sight meet in the point that projects to (0, 0, 1, 0): the eye, or the direction of view.
    const std::array<double, 4> center = projection.Inverse().Transform({0, 0, 1, 0});
    const double length = std::hypot(center[0], center[1], center[2]);
    view.perspective = std::abs(center[3]) > 1e-12 * length;
    if (view.perspective) {
        view.eye = {center[0] / center[3], center[1] / center[3], center[2] / center[3]};
    } else if (length > 0) {
        for (std::size_t i = 0; i < 3; ++i) view.viewer[i] = static_cast<float>(-center[i] / length);
        view.viewer[3] = 0;
    }
    view.eyeProjection = projection * CMatrix4d::Translation({view.eye[0], view.eye[1], view.eye[2]});
    return view;
}

CMatrix4d CFrameView::EyeModelView(const CMat4& meshToWorld) const {
    return CMatrix4d::Translation({-eye[0], -eye[1], -eye[2]}) * modelView * CMatrix4d::From(meshToWorld);
}

CVec3 CFrameView::ToEye(CVec3 worldPoint) const {
    const std::array<double, 4> p = modelView.Transform({worldPoint.x, worldPoint.y, worldPoint.z, 1});
    return {static_cast<float>(p[0] - eye[0]), static_cast<float>(p[1] - eye[1]),
            static_cast<float>(p[2] - eye[2])};
}

std::array<float, 9> CFrameView::PixelToViewer(const std::array<int, 4>& viewport) const {
    if (!perspective) return {0, 0, 0, 0, 0, 0, viewer[0], viewer[1], viewer[2]};
    // The eye is the origin here, so clip x, y and w are linear in a point: the inverse gives
    // its line of sight.
    CMatrix4d toClip;
    for (std::size_t column = 0; column < 3; ++column) {
        const std::size_t first = column * 4;
        toClip.m[first] = eyeProjection.m[first];
        toClip.m[first + 1] = eyeProjection.m[first + 1];
        toClip.m[first + 2] = eyeProjection.m[first + 3];
    }
    const CMatrix4d fromClip = toClip.Inverse();
    const double width = viewport[2], height = viewport[3];
    const std::array<double, 4> x = fromClip.Transform({-2 / width, 0, 0, 0});
    const std::array<double, 4> y = fromClip.Transform({0, -2 / height, 0, 0});
    const std::array<double, 4> corner =
        fromClip.Transform({1 + 2 * viewport[0] / width, 1 + 2 * viewport[1] / height, -1, 0});
    std::array<float, 9> result{};
    for (std::size_t i = 0; i < 3; ++i) {
        result[i] = static_cast<float>(x[i]);
        result[i + 3] = static_cast<float>(y[i]);
        result[i + 6] = static_cast<float>(corner[i]);
    }
    return result;
}

bool CFrameView::MayShow(const CBox& worldBounds) const {
    if (worldBounds.IsEmpty()) return false;
    const CVec3 low = worldBounds.min, high = worldBounds.max;
    for (const std::array<double, 4>& plane : planes) {
        const double best = plane[0] * (plane[0] < 0 ? low.x : high.x) +
                            plane[1] * (plane[1] < 0 ? low.y : high.y) +
                            plane[2] * (plane[2] < 0 ? low.z : high.z) + plane[3];
        if (best < 0) return false;
    }
    return true;
}

std::array<double, 4> CFrameView::DepthRow(const CMatrix4d& eyeModelView) const {
    return (eyeProjection * eyeModelView).Row(perspective ? 3 : 2);
}
