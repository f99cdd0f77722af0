// SPDX-License-Identifier: MIT
#pragma once

#include <wx/glcanvas.h>
#include <wx/stopwatch.h>
#include <wx/timer.h>

#include "engine/CGLCanvasI.h"
#include "view/CWheelNotches.h"

/** The OpenGL window: double buffered, 24 bits of depth, four samples a pixel unless OpenGL runs in software,
 * a context of the compatibility profile.
 *
 * All coordinates and sizes given to the handler are pixels of the framebuffer; on a display with a content
 * scale the toolkit's own are smaller. A frozen canvas paints nothing. It repaints when it is exposed, after
 * EndGL, after a turn of the wheel or a new size, and after a tick. The next tick comes only after a repaint,
 * so a hidden or slow window gets no more ticks than it can show: rotation ticks while SetRotating is on,
 * animation ticks from OnModelOpened until the handler returns false. */
class CGLCanvas final : public wxGLCanvas, public CGLCanvasI {
  public:
    /** About thirty frames a second, the pace of the file format's animations. */
    static constexpr int kRotationPeriodMs = 33;
    static constexpr int kAnimationPeriodMs = 33;

    /** attributes must be supported by the display. */
    CGLCanvas(CGLWindowHandler* handler, wxWindow* parent, const wxGLAttributes& attributes);
    ~CGLCanvas() override;

    /** False when the system refused a context. */
    [[nodiscard]] bool HasContext() const { return m_context.IsOK(); }

    void BeginGL() override;
    void EndGL() override;
    [[nodiscard]] bool IsReady() const override;
    [[nodiscard]] wxWindow* GetWindow() override { return this; }
    void OnModelOpened() override;
    void SetRotating(bool rotating) override;

  private:
    struct CPoint {
        int x = 0, y = 0;
    };
    /** Framebuffer pixels of a position in toolkit coordinates. */
    [[nodiscard]] CPoint InPixels(wxPoint position) const;

    void BindEvents();
    void Paint();
    void TakeSize();
    void ArmTicks();
    void LeftDown(wxMouseEvent& event);
    void LeftUp(wxMouseEvent& event);
    void EndPress();
    void DoubleClick(wxMouseEvent& event);
    void RightDown(wxMouseEvent& event);
    void RightUp(wxMouseEvent& event);
    void BeginPan(const wxMouseEvent& event, wxMouseButton button);
    /** Returns whether the mouse was moved. */
    bool EndPan();
    void Pinch(wxZoomGestureEvent& event);
    void Move(wxMouseEvent& event);
    void Wheel(wxMouseEvent& event);
    void KeyDown(wxKeyEvent& event);
    void RotationTick();
    void AnimationTick();

    CGLWindowHandler* m_handler;
    wxGLContext m_context;
    wxTimer m_rotationTimer, m_animationTimer;
    wxStopWatch m_sinceRotation, m_sinceAnimation;
    bool m_rotating = false;
    bool m_animating = false;
    bool m_pressed = false;
    wxMouseButton m_panButton = wxMOUSE_BTN_NONE;  ///< held, and pans
    double m_pinched = 1;                          ///< the gesture's factor so far
    CPoint m_mouse;
    CWheelNotches m_wheel;
};
