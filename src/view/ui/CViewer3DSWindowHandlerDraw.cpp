// SPDX-License-Identifier: MIT
// How the view repaints, and the seen view that describes what it shows.
#include <GL/gl.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "model/coarse/coarse_scene.h"
#include "picture/CBitmapConverter.h"
#include "view/ui/CGlAttribGuard.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "view/ui/input_waits.h"
#include "view/ui/view_hint.h"
#include "view/ui/zoom_box.h"

namespace {

/** Between two calls of the engine's idle work, which waits for another thread most of the time. */
constexpr int kIdlePeriodMs = 15;
/** A window that has been empty for so long gets ready for a large scene. */
constexpr int kEmptyMs = 150;
constexpr std::chrono::milliseconds kSlowFrame{100};
constexpr std::chrono::steady_clock::duration kLongestRest = std::chrono::milliseconds(100);

void AskForNicest() {
    glEnable(GL_POLYGON_SMOOTH);
    constexpr GLenum kHints[] = {GL_POLYGON_SMOOTH_HINT, GL_POINT_SMOOTH_HINT, GL_PERSPECTIVE_CORRECTION_HINT,
                                 GL_LINE_SMOOTH_HINT};
    for (const GLenum hint : kHints) glHint(hint, GL_NICEST);
}

using CClock = std::chrono::steady_clock;

}  // namespace

// --- moving and resting ----------------------------------------------------------------------------------

void CViewer3DSWindowHandler::OnPaint() {
    const bool isEmpty = m_showsCoarse || !GetEngine().Prepared();
    if (m_keeping == EKeeping::UntilTold || (m_keeping == EKeeping::UntilNext && isEmpty)) {
        m_isInterrupted = true;  // what is on the screen stays there
        return;
    }
    const bool moving = DrawsQuickly();
    m_follows = m_follows && IsMovedByHand();
    GetEngine().SetMoving(moving);
    GetEngine().SetFollowing(m_follows);
    m_isInterrupted = false;
    const CClock::time_point begin = CClock::now();
    DrawFrame(GL_RENDER, -1, -1);
    const CClock::time_point now = CClock::now();
    if (!moving && !m_follows && !m_isInterrupted) m_fullTook = now - begin;
    const bool whole = !GetEngine().Prepared() || GetEngine().IsLastFrameWhole();
    m_motion.Drawn(m_isInterrupted ? EDrawn::Interrupted : whole ? EDrawn::Whole : EDrawn::Reduced, now);
    // What turns or plays by itself may do so for ever: levels are made meanwhile.
    if (!m_motion.IsMovedByHand(now)) GetEngine().SetMoving(false);
    AwaitRest();
    if (!m_isInterrupted && !m_showsCoarse && GetEngine().Prepared()) {
        m_isReady = true;  // for what comes after a scene, nothing is made in advance
        TellThatItIsShown();
    }
    // Not inside the paint event: the work may take long, and the empty view should be visible meanwhile.
    if (m_whenReady) CallAfter([work = std::exchange(m_whenReady, nullptr)] { work(); });
}

/** After the paint event, when the picture is on the screen. Until then the work may be taken back. */
void CViewer3DSWindowHandler::TellThatItIsShown() {
    if (!m_whenShown) return;
    CallAfter([this] {
        if (const auto work = std::exchange(m_whenShown, nullptr)) work();
    });
}

/** What moves is drawn in full until there are levels, because without them much would be left out; only what is
 * moved by hand, and too slow for that, is not. */
bool CViewer3DSWindowHandler::DrawsQuickly() {
    SetRunning();
    const bool byHand = IsMovedByHand();
    return m_hasLevels ? byHand || m_motion.IsMoving(CClock::now()) : byHand && m_fullTook > kSlowFrame;
}

bool CViewer3DSWindowHandler::IsMovedByHand() const {
    return m_motion.IsMovedByHand(CClock::now()) || m_motion.IsToBeShown();
}

/** While levels are being made beside an animation, every other moment is theirs: else its full frames, which keep all cores
 * busy, would put off what makes them quick. */
int CViewer3DSWindowHandler::RestMs() const {
    if (m_hasLevels) return 1;
    return static_cast<int>(
        std::chrono::ceil<std::chrono::milliseconds>(std::min(m_fullTook, kLongestRest)).count());
}

void CViewer3DSWindowHandler::SetRunning() {
    m_motion.SetRunning(GetEngine().Prepared() && (m_rotate || (m_playing && HasAnimation())));
}

void CViewer3DSWindowHandler::Moved() {
    m_follows = false;
    m_motion.Moved(CClock::now());
}

void CViewer3DSWindowHandler::AwaitRest() {
    SetRunning();
    const CClock::time_point now = CClock::now();
    if (!GetEngine().Prepared() && !m_isReady)
        m_restTimer.StartOnce(kEmptyMs);
    else if (m_showsCoarse || !GetEngine().Prepared())
        m_restTimer.Stop();
    else if (const auto due = m_motion.DueIn(now))
        m_restTimer.StartOnce(std::max(1, static_cast<int>(due->count())));
    else if (!m_restTimer.IsRunning())  // what moves by itself would put it off for ever
        m_restTimer.StartOnce(m_motion.IsMovedByHand(now) ? static_cast<int>(CMotion::kStill.count())
                                                          : kIdlePeriodMs);
}

void CViewer3DSWindowHandler::OnRest() {
    if (!GetEngine().Prepared() && !m_isReady) {
        m_isReady = !GetReadyFor(CoarseKind()) && !GetReadyFor(UsualKinds());
        if (!m_isReady) m_restTimer.StartOnce(kIdlePeriodMs);
        return;
    }
    if (m_motion.IsMovedByHand(CClock::now())) return AwaitRest();
    if (m_motion.DueIn(CClock::now())) return Redraw();
    if (m_showsCoarse || !GetEngine().Prepared()) return;
    BeginWork();
    GetEngine().SetMoving(false);
    m_hasLevels = !GetEngine().WorkOnLevels();
    if (!m_hasLevels) m_restTimer.StartOnce(kIdlePeriodMs);
}

bool CViewer3DSWindowHandler::IsInterrupted() {
    m_isInterrupted = m_isInterrupted || InputWaits(m_gestures.IsHeld());
    return m_isInterrupted;
}

// --- drawing ---------------------------------------------------------------------------------------------

void CViewer3DSWindowHandler::DrawFrame(int renderMode, int x, int y) {
    const CGlAttribGuard attributes;
    AskForNicest();
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
    const CGlAttribGuard attributes;
    AskForNicest();
    CResult<CImage> picture = GetEngine().TakePicture(SeenView(), what, [this, what] {
        if (what == EPictureOf::Screen)
            DrawCaption();
        else
            DrawOverlays();
    });
    EndWork();
    return picture;
}

CStatus CViewer3DSWindowHandler::TrySaveScreenshot(const std::wstring& path) {
    const CResult<CImage> picture = TakePicture(EPictureOf::Screen);
    if (!picture) return picture.Error();
    CBitmapConverter converter;
    converter.SetFormat(CBitmapConverter::EImageExFormat::ByExtension);
    const CImage& image = picture.Value();
    if (converter.RGBA2File(image.rgba.data(), image.rgba.size(), image.width, image.height, path))
        return CDone{};
    return converter.LastError();
}

void CViewer3DSWindowHandler::StartTrackBall(CPixel point) {
    const C3dsDisplayWrap& engine = GetEngine();
    const CVec3 view = engine.SeenView().camera.Eye() - engine.SeenView().BallCenter();
    m_trackBall.SetBall(2 * engine.GetRadius(), view.x, view.y, view.z);
    m_trackBall.Begin(point.x, point.y);
}

void CViewer3DSWindowHandler::DrawOverlays() {
    DrawHandOverlays();
    DrawCaption();
}

void CViewer3DSWindowHandler::DrawCaption() {
    if (GetCanvas()) m_caption.Draw(*GetCanvas()->GetWindow());
}

void CViewer3DSWindowHandler::DrawHandOverlays() {
    const C3dsDisplayWrap& engine = GetEngine();
    if (m_gestures.DragState() == EDragState::Dragging) {
        const CVec3 center = engine.SeenView().BallCenter();
        glTranslatef(center.x, center.y, center.z);
        m_trackBall.DrawOverlay();
        glTranslatef(-center.x, -center.y, -center.z);
    } else if (m_gestures.ZoomBox()) {
        DrawZoomBox(*m_gestures.ZoomBox());
    }
}
