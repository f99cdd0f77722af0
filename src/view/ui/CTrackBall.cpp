// SPDX-License-Identifier: MIT
#include "view/ui/CTrackBall.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

#include "view/ui/CGlAttribGuard.h"

namespace {

struct CQuadricDeleter {
    void operator()(GLUquadric* quadric) const { gluDeleteQuadric(quadric); }
};
using CQuadricPtr = std::unique_ptr<GLUquadric, CQuadricDeleter>;

CQuadricPtr NewQuadric() {
    CQuadricPtr quadric(gluNewQuadric());
    if (!quadric) return quadric;
    gluQuadricDrawStyle(quadric.get(), GLU_FILL);
    gluQuadricNormals(quadric.get(), GLU_SMOOTH);
    gluQuadricOrientation(quadric.get(), GLU_OUTSIDE);
    return quadric;
}

void DrawSphere(double radius, int slices, int stacks) {
    if (const CQuadricPtr quadric = NewQuadric()) gluSphere(quadric.get(), radius, slices, stacks);
}

/** A thin ring on the ball, in the plane z = 0 of the turned frame. */
void DrawRing(double ballRadius) {
    constexpr double kInner = 0.995, kOuter = 1.001;
    constexpr int kSlices = 100, kLoops = 100;
    if (const CQuadricPtr quadric = NewQuadric())
        gluDisk(quadric.get(), ballRadius * kInner, ballRadius * kOuter, kSlices, kLoops);
}

/** A circle round center in the plane of two vectors as long as its radius. */
void DrawCircle(CVec3d center, CVec3d a, CVec3d b) {
    constexpr int kSegments = 100;
    glBegin(GL_LINE_LOOP);
    for (int i = 0; i < kSegments; ++i) {
        const double angle = 2 * std::numbers::pi * i / kSegments;
        const CVec3d p = center + a * std::cos(angle) + b * std::sin(angle);
        glVertex3d(p.x, p.y, p.z);
    }
    glEnd();
}

void DrawLine(CVec3d from, CVec3d to) {
    glVertex3d(from.x, from.y, from.z);
    glVertex3d(to.x, to.y, to.z);
}

}  // namespace

void CTrackBall::SetBall(float r, float ex, float ey, float ez) {
    CViewMatrices matrices;
    glGetDoublev(GL_MODELVIEW_MATRIX, matrices.modelView.m.data());
    glGetDoublev(GL_PROJECTION_MATRIX, matrices.projection.m.data());
    glGetIntegerv(GL_VIEWPORT, matrices.viewport.data());
    CTrackBallMotion::SetBall(r, {ex, ey, ez}, matrices);
}

void CTrackBall::ApplyMatrix() const {
    glMultMatrixf(Matrix().data());
}

void CTrackBall::DrawOverlay() const {
    if (!IsDragging() || !IsOverlayEnabled() || Radius() <= 0) return;
    const CGlAttribGuard attributes;
    const CGlMatrixGuard modelView(GL_MODELVIEW);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    glDepthFunc(GL_LESS);
    DrawBall();
    DrawOutlines();
    DrawFrame();
    DrawDrag();
    DrawTurnedRings();
    DrawGrid();
}

void CTrackBall::DrawBall() const {
    constexpr int kSlices = 72, kStacks = 36;
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glLineWidth(1.0f);
    glColor4f(0.5f, 0, 0, 0);
    // An alpha of 0 leaves the picture as it is: the ball is invisible, and only its depth values hide what
    // lies behind its near half.
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    DrawSphere(Radius(), kSlices, kStacks);
    glDisable(GL_BLEND);
}

void CTrackBall::DrawOutlines() const {
    glDepthFunc(GL_ALWAYS);
    if (!IsMissed()) {
        glColor4f(0.3f, 0.3f, 0.3f, 0);
        glLineWidth(3.0f);
        DrawOutline();
    }
    glColor4f(1, 1, 1, 0);
    glLineWidth(2.0f);
    DrawOutline();
    glLineWidth(1.0f);
    glDepthFunc(GL_LESS);
}

void CTrackBall::DrawFrame() const {
    const double r = Radius(), tip = r * 1.1;
    const CGlMatrixGuard turned(GL_MODELVIEW);
    ApplyMatrix();
    glLineWidth(2.0f);
    glColor4f(0.3f, 0.2f, 0.2f, 1.0f);
    DrawRing(r);
    glBegin(GL_LINES);
    DrawLine({-tip, 0, 0}, {tip, 0, 0});
    DrawLine({0, -tip, 0}, {0, tip, 0});
    DrawLine({0, 0, -tip}, {0, 0, tip});
    glEnd();
    glLineWidth(1.0f);
}

void CTrackBall::DrawDrag() const {
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDepthFunc(GL_ALWAYS);
    if (IsMissed()) return;
    glLineWidth(2.0f);
    glColor4f(0.5f, 0.5f, 0.5f, 0.1f);
    glBegin(GL_LINES);
    DrawLine(BeginVector() * Radius(), CurrentVector() * Radius());
    glEnd();
}

void CTrackBall::DrawTurnedRings() const {
    const double r = Radius();
    const CGlMatrixGuard turned(GL_MODELVIEW);
    ApplyMatrix();
    glLineWidth(4.0f);
    glColor4f(0.3f, 0.2f, 0.2f, 0.2f);
    DrawRing(r);
    DrawCircle({}, {r, 0, 0}, {0, 0, r});
    glLineWidth(1.0f);
    glDepthFunc(GL_LESS);
}

void CTrackBall::DrawGrid() const {
    constexpr int kSlices = 24, kStacks = 12;
    constexpr float kAlphaOn = 0.15f, kAlphaOff = 0.3f;
    const CGlMatrixGuard turned(GL_MODELVIEW);
    ApplyMatrix();
    glColor4f(0.5f, 0.2f, 0.2f, IsMissed() ? kAlphaOff : kAlphaOn);
    glPolygonMode(GL_BACK, GL_FILL);
    glPolygonMode(GL_FRONT, GL_LINE);
    DrawSphere(Radius(), kSlices, kStacks);

    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    glDepthFunc(GL_ALWAYS);
    glPolygonMode(GL_BACK, GL_POINT);
    glPolygonMode(GL_FRONT, GL_LINE);
    DrawSphere(Radius(), kSlices, kStacks);
    glDepthFunc(GL_LESS);
    glDisable(GL_CULL_FACE);
    glDisable(GL_BLEND);
}

/** The rim of the ball as the eye sees it; from inside there is none. */
void CTrackBall::DrawOutline() const {
    const double distance = Length(View());
    if (!(distance > 1)) return;
    const CVec3d sight = Normalized(View());
    const CVec3d right =
        Normalized(Cross(std::abs(sight.z) > 0.9 ? CVec3d{0, 1, 0} : CVec3d{0, 0, 1}, sight));
    const double plane = 1 / distance;
    const double rim = std::sqrt(1 - plane * plane) * Radius();
    DrawCircle(sight * (plane * Radius()), right * rim, Cross(sight, right) * rim);
}
