// SPDX-License-Identifier: MIT
#include "view/ui/zoom_box.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <array>

#include "base/math/C2DRect.h"
#include "camera/CSavedView.h"
#include "view/ui/CGlAttribGuard.h"

namespace {

/** A window point on the near plane of the current matrices. */
std::array<double, 3> UnprojectCorner(const CViewMatrices& current, double x, double y) {
    std::array<double, 3> p{};
    gluUnProject(x, current.viewport[3] - y, 0, current.modelView.m.data(), current.projection.m.data(),
                 current.viewport.data(), &p[0], &p[1], &p[2]);
    return p;
}

void DrawCorners(GLenum mode, const std::array<double, 3>& a, const std::array<double, 3>& b) {
    glBegin(mode);
    glVertex3d(a[0], a[1], a[2]);
    glVertex3d(b[0], a[1], a[2]);
    glVertex3d(b[0], b[1], b[2]);
    glVertex3d(a[0], b[1], b[2]);
    glEnd();
}

}  // namespace

void DrawZoomBox(const C2DRect& box) {
    CViewMatrices current;
    glGetIntegerv(GL_VIEWPORT, current.viewport.data());
    const auto [x, y, w, h] = current.viewport;
    if (w <= 0 || h <= 0) return;

    const CGlAttribGuard attributes;
    const CGlMatrixGuard projection(GL_PROJECTION);
    glLoadIdentity();
    // h belongs to the right edge and w to the bottom. The corners are unprojected by the current matrices,
    // so they appear at the mouse whatever these are.
    glOrtho(x, h, w, y, 1000.0, -1000.0);
    const CGlMatrixGuard modelView(GL_MODELVIEW);
    glLoadIdentity();
    glGetDoublev(GL_PROJECTION_MATRIX, current.projection.m.data());

    const C2DRect upright = box.Normalized();
    const auto from = UnprojectCorner(current, upright.left, upright.top);
    const auto to = UnprojectCorner(current, upright.right, upright.bottom);

    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_DEPTH_TEST);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glColor4d(0.39, 0.46, 0.77, 0.5);
    DrawCorners(GL_POLYGON, from, to);

    glDisable(GL_BLEND);
    glColor4f(0, 0, 0, 1);
    glLineWidth(1.0f);
    DrawCorners(GL_LINE_LOOP, from, to);
}
