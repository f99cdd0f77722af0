// SPDX-License-Identifier: MIT
#include "frame/slideshow/ui/CPointerHider.h"

namespace {

constexpr int kRestMs = 1000;

}  // namespace

CPointerHider::CPointerHider(wxWindow& window) : m_window(&window), m_timer(this) {
    window.Bind(wxEVT_MOTION, &CPointerHider::OnMouse, this);
    Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Hide(); });
    m_timer.StartOnce(kRestMs);
}

CPointerHider::~CPointerHider() {
    if (!m_window) return;
    m_window->Unbind(wxEVT_MOTION, &CPointerHider::OnMouse, this);
    Show();
}

void CPointerHider::OnMouse(wxMouseEvent& event) {
    event.Skip();
    // A window that changes below the pointer reports a movement, too.
    const bool moved = event.GetPosition() != m_position;
    m_position = event.GetPosition();
    if (!moved) return;
    Show();
    m_timer.StartOnce(kRestMs);
}

void CPointerHider::Hide() {
    if (m_isHidden || !m_window) return;
    m_before = m_window->GetCursor();
    m_window->SetCursor(wxCursor(wxCURSOR_BLANK));
    m_isHidden = true;
}

void CPointerHider::Show() {
    if (!m_isHidden) return;
    m_window->SetCursor(m_before);
    m_isHidden = false;
}
