// SPDX-License-Identifier: MIT
// How the view draws a frame; everything else is in CViewer3DSWindowHandler.cpp.
#include <GL/gl.h>
#include <GL/glu.h>

#include "engine/C3dsDisplayWrap.h"
#include "view/ui/CGlAttribGuard.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "view/ui/view_hint.h"
#include "view/ui/zoom_box.h"

void CViewer3DSWindowHandler::DrawFrame(int renderMode, int x, int y) {
    const CGlAttribGuard attributes;
    glEnable(GL_POLYGON_SMOOTH);
    constexpr GLenum kHints[] = {GL_POLYGON_SMOOTH_HINT, GL_POINT_SMOOTH_HINT, GL_PERSPECTIVE_CORRECTION_HINT,
                                 GL_LINE_SMOOTH_HINT};
    for (const GLenum hint : kHints) glHint(hint, GL_NICEST);
    if (!GetEngine().InitDrawings(renderMode, x, y)) {
        if (renderMode == GL_RENDER) DrawViewHint(m_hint);
        return;
    }

    SetUpCamera();
    glPushMatrix();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glPushMatrix();
    SetUpModel(renderMode);
    glPolygonMode(GL_FRONT_AND_BACK, m_wireframe ? GL_LINE : GL_FILL);
    GetEngine().DrawModel(renderMode);

    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
    if (renderMode == GL_RENDER) DrawOverlays();
}

/** Multiplies the camera onto the projection matrix, which stays the current one. */
void CViewer3DSWindowHandler::SetUpCamera() {
    const C3dsDisplayWrap& engine = GetEngine();
    const float origin[3] = {engine.GetXOrg(), engine.GetYOrg(), engine.GetZOrg()};
    // The eye turns about an axis through the look-at point: about any other its distance would change, and
    // with it what the engine's near and far planes cut off.
    float view[3] = {engine.GetEyeX() - origin[0], engine.GetEyeY() - origin[1],
                     engine.GetEyeZ() - origin[2]};
    m_trackBall.OrbitEye(engine.GetCameraName(), view);
    glMatrixMode(GL_PROJECTION);
    gluLookAt(origin[0] + view[0], origin[1] + view[1], origin[2] + view[2], origin[0], origin[1], origin[2],
              engine.GetUpX(), engine.GetUpY(), engine.GetUpZ());
}

/** The model turns about the look-at point shifted by the pivot offset, and is scaled about
 * that same point. */
void CViewer3DSWindowHandler::SetUpModel(int renderMode) {
    const C3dsDisplayWrap& engine = GetEngine();
    glTranslated(m_pivot[0], m_pivot[1], m_pivot[2]);
    glTranslatef(engine.GetXOrg(), engine.GetYOrg(), engine.GetZOrg());
    glScaled(m_scale[0], m_scale[1], m_scale[2]);
    if (renderMode == GL_RENDER)
        if (const auto point = m_gestures.TakePendingDrag()) StartTrackBall(*point);
    m_trackBall.ApplyMatrix();
    glTranslatef(-engine.GetXOrg(), -engine.GetYOrg(), -engine.GetZOrg());
    glTranslated(-m_pivot[0], -m_pivot[1], -m_pivot[2]);
}

void CViewer3DSWindowHandler::StartTrackBall(CPixel point) {
    const C3dsDisplayWrap& engine = GetEngine();
    m_trackBall.SetBall(2 * engine.GetRadius(), engine.GetEyeX() - engine.GetXOrg(),
                        engine.GetEyeY() - engine.GetYOrg(), engine.GetEyeZ() - engine.GetZOrg());
    m_trackBall.Begin(point.x, point.y);
}

void CViewer3DSWindowHandler::DrawOverlays() {
    const C3dsDisplayWrap& engine = GetEngine();
    if (m_gestures.DragState() == EDragState::Dragging) {
        glTranslatef(engine.GetXOrg(), engine.GetYOrg(), engine.GetZOrg());
        m_trackBall.DrawOverlay();
        glTranslatef(-engine.GetXOrg(), -engine.GetYOrg(), -engine.GetZOrg());
    } else if (m_gestures.ZoomBox()) {
        DrawZoomBox(*m_gestures.ZoomBox());
    }
}
