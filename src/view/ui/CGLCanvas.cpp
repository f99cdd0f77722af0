// SPDX-License-Identifier: MIT
#include "view/ui/CGLCanvas.h"

#include <wx/dcclient.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "engine/CGLWindowHandler.h"
#include "view/ui/display_speed.h"

namespace {

wxGLAttributes Attributes(int samples) {
    wxGLAttributes attributes;
    attributes.RGBA().DoubleBuffer().Depth(24).Stencil(0);
    if (samples > 0) attributes.SampleBuffers(1).Samplers(samples);
    attributes.EndList();
    return attributes;
}

/** The rest of a period, but at least so much, and that at least 1: with a timer of 0 the window would never paint. */
int Rest(int periodMs, const wxStopWatch& sinceLast, int leastMs) {
    return std::max({1, leastMs, static_cast<int>(std::min<long>(periodMs - sinceLast.Time(), periodMs))});
}

/** The toolkit treats a display without OpenGL as a programming error and would show the user a dialog
 * about it. */
class CWithoutAsserts {
  public:
    CWithoutAsserts() : m_before(wxSetAssertHandler(nullptr)) {}
    CWithoutAsserts(const CWithoutAsserts&) = delete;
    CWithoutAsserts& operator=(const CWithoutAsserts&) = delete;
    ~CWithoutAsserts() { wxSetAssertHandler(m_before); }

  private:
    wxAssertHandler_t m_before;
};

}  // namespace

CGLCanvasI* CGLCanvasI::Create(CGLWindowHandler* handler, wxWindow* parent) {
    const CWithoutAsserts probing;
    // In software, drawing with four samples takes five times as long.
    const int wanted = IsDisplayDrawnInSoftware() ? 0 : 4;
    for (const int samples : {wanted, wanted / 2, 0}) {
        const wxGLAttributes attributes = Attributes(samples);
        if (!wxGLCanvas::IsDisplaySupported(attributes)) continue;
        auto canvas = std::make_unique<CGLCanvas>(handler, parent, attributes);
        if (canvas->HasContext()) return canvas.release();
    }
    return nullptr;
}

CGLCanvas::CGLCanvas(CGLWindowHandler* handler, wxWindow* parent, const wxGLAttributes& attributes)
    : wxGLCanvas(parent, attributes, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                 wxWANTS_CHARS | wxFULL_REPAINT_ON_RESIZE),
      m_handler(handler),
      m_context(this),
      m_rotationTimer(this, wxWindow::NewControlId()),
      m_animationTimer(this, wxWindow::NewControlId()) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    // The picture does not mirror, so positions must not either.
    SetLayoutDirection(wxLayout_LeftToRight);
    BindEvents();
}

CGLCanvas::~CGLCanvas() {
    // The handler is being deleted too, so no event of the dying window may reach it.
    m_handler = nullptr;
    m_rotationTimer.Stop();
    m_animationTimer.Stop();
    if (HasCapture()) ReleaseMouse();
}

void CGLCanvas::BindEvents() {
    Bind(wxEVT_PAINT, [this](wxPaintEvent&) { Paint(); });
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        TakeSize();
        event.Skip();
    });
    Bind(wxEVT_LEFT_DOWN, &CGLCanvas::LeftDown, this);
    Bind(wxEVT_LEFT_DCLICK, &CGLCanvas::DoubleClick, this);
    Bind(wxEVT_LEFT_UP, &CGLCanvas::LeftUp, this);
    Bind(wxEVT_MOUSE_CAPTURE_LOST, [this](wxMouseCaptureLostEvent&) {
        EndPress();
        EndPan();
    });
    Bind(wxEVT_RIGHT_DOWN, &CGLCanvas::RightDown, this);
    Bind(wxEVT_RIGHT_DCLICK, &CGLCanvas::RightDown, this);
    Bind(wxEVT_RIGHT_UP, &CGLCanvas::RightUp, this);
    const auto middleDown = [this](wxMouseEvent& event) { BeginPan(event, wxMOUSE_BTN_MIDDLE); };
    Bind(wxEVT_MIDDLE_DOWN, middleDown);
    Bind(wxEVT_MIDDLE_DCLICK, middleDown);
    Bind(wxEVT_MIDDLE_UP, [this](wxMouseEvent&) {
        if (m_panButton == wxMOUSE_BTN_MIDDLE) EndPan();
    });
    if (EnableTouchEvents(wxTOUCH_ZOOM_GESTURE)) Bind(wxEVT_GESTURE_ZOOM, &CGLCanvas::Pinch, this);
    Bind(wxEVT_MOTION, &CGLCanvas::Move, this);
    Bind(wxEVT_MOUSEWHEEL, &CGLCanvas::Wheel, this);
    Bind(wxEVT_KEY_DOWN, &CGLCanvas::KeyDown, this);
    Bind(
        wxEVT_TIMER, [this](wxTimerEvent&) { RotationTick(); }, m_rotationTimer.GetId());
    Bind(
        wxEVT_TIMER, [this](wxTimerEvent&) { AnimationTick(); }, m_animationTimer.GetId());
}

bool CGLCanvas::IsReady() const {
#if defined(__WXGTK__) && !wxUSE_GLCANVAS_EGL
    return GetXWindow() != 0;
#else
    return IsShownOnScreen();
#endif
}

void CGLCanvas::BeginGL() {
    if (IsReady()) SetCurrent(m_context);
}

void CGLCanvas::EndGL() {
    Refresh(false);
}

void CGLCanvas::OnModelOpened() {
    m_animating = true;
    Refresh(false);
}

void CGLCanvas::SetRotating(bool rotating) {
    m_rotating = rotating;
    if (rotating)
        Refresh(false);  // ticks begin after this repaint
    else
        m_rotationTimer.Stop();
}

CGLCanvas::CPoint CGLCanvas::InPixels(wxPoint position) const {
    const double scale = GetContentScaleFactor();
    return {static_cast<int>(std::floor(position.x * scale)),
            static_cast<int>(std::floor(position.y * scale))};
}

void CGLCanvas::Paint() {
    const wxPaintDC dc(this);  // without one the toolkit would repeat the paint event
    if (!m_handler || IsFrozen() || !IsReady() || !SetCurrent(m_context)) return;
    m_handler->OnPaint();
    if (m_handler->IsPictureComplete()) SwapBuffers();
    ArmTicks();
}

void CGLCanvas::TakeSize() {
    const wxSize size = GetClientSize();
    const CPoint pixels = InPixels({size.x, size.y});
    if (m_handler) m_handler->OnSize(pixels.x, pixels.y);
    Refresh(false);
}

void CGLCanvas::ArmTicks() {
    const int leastMs = m_handler->RestMs();
    if (m_rotating && !m_rotationTimer.IsRunning())
        m_rotationTimer.StartOnce(Rest(kRotationPeriodMs, m_sinceRotation, leastMs));
    if (m_animating && !m_animationTimer.IsRunning())
        m_animationTimer.StartOnce(Rest(kAnimationPeriodMs, m_sinceAnimation, leastMs));
}

void CGLCanvas::RotationTick() {
    m_sinceRotation.Start();
    if (!m_handler || !m_rotating) return;
    m_handler->OnRotationTick();
    Refresh(false);
}

void CGLCanvas::AnimationTick() {
    m_sinceAnimation.Start();
    if (!m_handler || !m_animating) return;
    m_animating = m_handler->OnAnimationTick();
    if (m_animating) Refresh(false);
}

void CGLCanvas::LeftDown(wxMouseEvent& event) {
    SetFocus();
    if (!HasCapture()) CaptureMouse();
    m_pressed = true;
    m_mouse = InPixels(event.GetPosition());
    if (m_handler) m_handler->OnLeftDown(m_mouse.x, m_mouse.y);
}

void CGLCanvas::DoubleClick(wxMouseEvent& event) {
    LeftDown(event);
    if (m_handler) m_handler->OnDoubleClick(m_mouse.x, m_mouse.y);
}

void CGLCanvas::LeftUp(wxMouseEvent& event) {
    m_mouse = InPixels(event.GetPosition());
    if (HasCapture() && m_panButton == wxMOUSE_BTN_NONE) ReleaseMouse();
    EndPress();
}

/** The button came up, or the system took the mouse away: it counts as released where it was last seen. */
void CGLCanvas::EndPress() {
    if (!m_pressed) return;
    m_pressed = false;
    if (m_handler) m_handler->OnLeftUp(m_mouse.x, m_mouse.y);
}

void CGLCanvas::BeginPan(const wxMouseEvent& event, wxMouseButton button) {
    SetFocus();
    if (m_panButton != wxMOUSE_BTN_NONE) return;
    if (!HasCapture()) CaptureMouse();
    m_panButton = button;
    m_mouse = InPixels(event.GetPosition());
    if (m_handler) m_handler->OnPanDown(m_mouse.x, m_mouse.y);
}

bool CGLCanvas::EndPan() {
    if (m_panButton == wxMOUSE_BTN_NONE) return false;
    m_panButton = wxMOUSE_BTN_NONE;
    if (HasCapture() && !m_pressed) ReleaseMouse();
    return m_handler && m_handler->OnPanUp();
}

void CGLCanvas::Pinch(wxZoomGestureEvent& event) {
    const double factor = event.GetZoomFactor();
    const double before = event.IsGestureStart() ? 1 : m_pinched;
    m_pinched = factor;
    const CPoint p = InPixels(event.GetPosition());
    if (m_handler && before > 0) m_handler->OnPinch(p.x, p.y, factor / before);
}

void CGLCanvas::RightUp(wxMouseEvent& event) {
    const CPoint p = InPixels(event.GetPosition());
    if (m_panButton == wxMOUSE_BTN_RIGHT) {
        // A click is none of a drag's business, and has the meaning that it has without Shift.
        if (!EndPan() && m_handler) m_handler->OnRightDown(p.x, p.y);
    }
    if (m_handler) m_handler->OnRightUp(p.x, p.y);
    event.Skip();
}

void CGLCanvas::RightDown(wxMouseEvent& event) {
    if (event.ShiftDown()) return BeginPan(event, wxMOUSE_BTN_RIGHT);
    SetFocus();
    const CPoint p = InPixels(event.GetPosition());
    if (m_handler) m_handler->OnRightDown(p.x, p.y);
    event.Skip();
}

void CGLCanvas::Move(wxMouseEvent& event) {
    m_mouse = InPixels(event.GetPosition());
    if (m_handler) m_handler->OnMouseMove(m_mouse.x, m_mouse.y, event.LeftIsDown());
}

void CGLCanvas::Wheel(wxMouseEvent& event) {
    if (event.GetWheelAxis() != wxMOUSE_WHEEL_VERTICAL || !m_handler) return;
    const int notches = m_wheel.Add(event.GetWheelRotation(), event.GetWheelDelta());
    const int notch = notches > 0 ? event.GetWheelDelta() : -event.GetWheelDelta();
    const CPoint p = InPixels(event.GetPosition());
    for (int i = 0; i < std::abs(notches); ++i) {
        if (event.AltDown())
            m_handler->OnWheelAt(p.x, p.y, notch);
        else
            m_handler->OnWheel(notch);
    }
    if (notches != 0) Refresh(false);
}

void CGLCanvas::KeyDown(wxKeyEvent& event) {
    if (m_handler) m_handler->OnKeyDown(event.GetKeyCode());
    const bool isPlain = !event.ControlDown() && !event.AltDown() && !event.MetaDown();
    if (isPlain && m_handler && m_handler->OnModelKey(event.GetKeyCode(), event.ShiftDown())) return;
    const bool isPan = event.ControlDown() && !event.AltDown() && !event.MetaDown();
    if (isPan && m_handler && m_handler->OnPanKey(event.GetKeyCode(), event.ShiftDown())) return;
    event.Skip();  // so that menus receive their keys
}
