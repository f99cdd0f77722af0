// SPDX-License-Identifier: MIT
#include "frame/model_list/ui/CScrollButton.h"

#include <wx/dcbuffer.h>

#include <utility>

#include "frame/model_list/ui/CButtonScrollArt.h"
#include "widgets/access/ui/accessible_role.h"
#include "widgets/access/ui/focus.h"
#include "widgets/ui/accessible_name.h"

namespace {

constexpr int kFirstRepeatMs = 350, kRepeatMs = 30;

}  // namespace

CScrollButton::CScrollButton(wxWindow* parent, bool pointsRight, const std::wstring& name, CActions actions)
    : wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_NONE | wxFULL_REPAINT_ON_RESIZE),
      m_pointsRight(pointsRight),
      m_actions(std::move(actions)) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    SetMinSize({CButtonScrollArt::Width(*this), -1});
    SetLayoutDirection(wxLayout_LeftToRight);  // the arrow points where it is said to
    SetAccessibleName(*this, name);
    SetAccessibleRole(*this, EAccessibleRole::Button);
    KeepFocusOff(*this);
    SetToolTip(name);
    Bind(wxEVT_PAINT, [this](wxPaintEvent&) { OnPaint(); });
    Bind(wxEVT_LEFT_DOWN, [this](wxMouseEvent&) { SetPressed(true); });
    Bind(wxEVT_LEFT_DCLICK, [this](wxMouseEvent&) { SetPressed(true); });
    Bind(wxEVT_LEFT_UP, [this](wxMouseEvent&) { SetPressed(false); });
    Bind(wxEVT_MOUSE_CAPTURE_LOST, [this](wxMouseCaptureLostEvent&) { SetPressed(false); });
    const auto hover = [this](bool hovered) {
        m_isHovered = hovered;
        Refresh(false);
    };
    Bind(wxEVT_ENTER_WINDOW, [hover](wxMouseEvent&) { hover(true); });
    Bind(wxEVT_LEAVE_WINDOW, [hover](wxMouseEvent&) { hover(false); });
    m_timer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTimer(); });
}

void CScrollButton::SetUseful(bool useful) {
    if (useful == m_isUseful) return;
    m_isUseful = useful;
    Refresh(false);
}

void CScrollButton::SetPressed(bool pressed) {
    if (pressed == m_isPressed) return;
    m_isPressed = pressed;
    if (pressed && !HasCapture()) CaptureMouse();
    if (!pressed && HasCapture()) ReleaseMouse();
    m_actions.press(pressed);
    if (pressed) {
        m_actions.scroll();
        m_timer.StartOnce(kFirstRepeatMs);
    } else {
        m_timer.Stop();
    }
    Refresh(false);
}

void CScrollButton::OnTimer() {
    // Away from the button it waits, as other buttons do.
    if (GetClientRect().Contains(ScreenToClient(wxGetMousePosition()))) m_actions.scroll();
    m_timer.StartOnce(kRepeatMs);
}

void CScrollButton::OnPaint() {
    wxAutoBufferedPaintDC dc(this);
    CButtonScrollArt::Draw(dc, *this, GetClientRect(), {m_pointsRight, m_isUseful, m_isHovered, m_isPressed});
}
