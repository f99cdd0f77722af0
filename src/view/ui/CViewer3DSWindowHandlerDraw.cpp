// SPDX-License-Identifier: MIT
// How the view repaints, and the seen view that describes what it shows.
#include <GL/gl.h>

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
    (void)SeenView();  // takes over what the mouse has turned since the last repaint
    if (!GetEngine().InitDrawings(renderMode, x, y)) {
        if (renderMode == GL_RENDER) DrawViewHint(m_hint);
        return;
    }

    const CSeenView& seen = GetEngine().SeenView();
    glMultMatrixf(seen.ViewMatrix().m.data());  // the projection matrix is the current one
    glMatrixMode(GL_MODELVIEW);
    if (renderMode == GL_RENDER) {
        if (const auto point = m_gestures.TakePendingDrag()) {
            glLoadMatrixf(seen.BallMatrix().m.data());
            StartTrackBall(*point);
        }
    }
    glLoadMatrixf(seen.PlacingMatrix().m.data());
    glPolygonMode(GL_FRONT_AND_BACK, seen.wire ? GL_LINE : GL_FILL);
    GetEngine().DrawModel(renderMode);
    glLoadIdentity();
    if (renderMode == GL_RENDER) DrawOverlays();
}

const CSeenView& CViewer3DSWindowHandler::SeenView() {
    GetEngine().SetTurn(m_trackBall.Rotation(), m_trackBall.OrbitSum());
    return GetEngine().SeenView();
}

CResult<CImage> CViewer3DSWindowHandler::TakePicture(EPictureOf what) {
    BeginWork();
    CResult<CImage> picture = GetEngine().TakePicture(SeenView(), what, [this] { DrawOverlays(); });
    EndWork();
    return picture;
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
