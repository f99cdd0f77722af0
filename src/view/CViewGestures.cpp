// SPDX-License-Identifier: MIT
#include "view/CViewGestures.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

CViewGestures::CViewGestures(CGestureTarget& target, CTrackBallMotion& trackBall, CViewToolState* tools)
    : m_target(target), m_trackBall(trackBall), m_tools(tools) {}

void CViewGestures::LeftDown(int x, int y, bool controlDown) {
    m_pan.reset();
    m_hasMissed = false;
    if (controlDown) {
        m_zoomBox = C2DRect(x, y, x, y);
    } else if (m_dragState == EDragState::Idle && !UseTool(x, y)) {
        m_dragState = EDragState::Pending;
        m_dragPoint = Flipped(x, y);
    }
    m_target.TellLeftButtonDown();
    m_target.EndWork();
}

/** True when a tool took the press. */
bool CViewGestures::UseTool(int x, int y) {
    if (!m_tools) return false;
    m_pressPoint = {x, y};
    if (!m_tools->IsActive()) {
        m_target.StartLongPress(kLongPressMs);
        return false;
    }
    const char* node = m_target.PickNode(x, y);
    m_hasMissed = !node;
    if (!node) return false;
    m_tools->Apply(node);
    return true;
}

bool CViewGestures::IsNearPress(int x, int y) const {
    return std::abs(x - m_pressPoint.x) <= kLongPressSlopPx &&
           std::abs(y - m_pressPoint.y) <= kLongPressSlopPx;
}

void CViewGestures::Move(int x, int y, bool leftDown) {
    m_hasMissed = m_hasMissed && leftDown && IsNearPress(x, y);
    if (!leftDown && m_dragState != EDragState::Idle) FinishDrag(x, y);
    if (m_dragState == EDragState::Dragging) {
        Follow(Flipped(x, y));
    } else if (m_zoomBox) {
        m_zoomBox->right = x;
        m_zoomBox->bottom = y;
        m_target.EndWork();
    } else if (m_pan) {
        PanTo({x, y});
    }
    if (m_tools) m_target.ShowCursor(m_tools->GetCursor());
}

void CViewGestures::Follow(CPixel point) {
    if (!m_trackBall.Drag(point.x, point.y)) {
        m_trackBall.Release(point.x, point.y);
        m_dragState = EDragState::Pending;
    }
    m_dragPoint = point;
    m_target.EndWork();
}

void CViewGestures::LeftUp(int x, int y) {
    m_target.StopLongPress();
    if (m_dragState != EDragState::Idle) FinishDrag(x, y);
    if (std::exchange(m_hasMissed, false) && m_tools && m_tools->IsActive()) m_tools->Miss();
    if (!m_zoomBox) return;
    // The box ends at the last move of the mouse, not where the button was released.
    const C2DRect box = m_zoomBox->Normalized();
    m_zoomBox.reset();
    m_target.ZoomModel(box);
    m_target.EndWork();
}

void CViewGestures::FinishDrag(int x, int y) {
    const CPixel point = Flipped(x, y);
    m_trackBall.Release(point.x, point.y);
    m_dragState = EDragState::Idle;
    m_dragPoint = {};
    m_target.EndWork();
}

void CViewGestures::Wheel(int rotation) {
    if (m_dragState != EDragState::Idle) return;
    m_target.ZoomModel(rotation < 1 ? kWheelStep : -kWheelStep);
}

void CViewGestures::WheelAt(int x, int y, int rotation) {
    if (m_dragState != EDragState::Idle) return;
    m_target.ZoomModelAt(rotation < 1 ? kWheelStep : -kWheelStep, x, y);
}

void CViewGestures::Pinch(int x, int y, double factor) {
    constexpr double kStepsOfE = 200;  // see CViewCamera::Zoom
    if (m_dragState != EDragState::Idle || !(factor > 0) || !std::isfinite(factor)) return;
    m_pinched -= kStepsOfE * std::log(factor);
    const double whole = std::trunc(std::clamp(m_pinched, -1000.0, 1000.0));
    m_pinched = std::clamp(m_pinched - whole, -1.0, 1.0);
    if (whole == 0) return;
    m_target.ZoomModelAt(static_cast<int>(whole), x, y);
    m_target.EndWork();
}

void CViewGestures::PanDown(int x, int y) {
    if (m_dragState == EDragState::Idle && !m_zoomBox) m_pan = CPan{{x, y}};
}

bool CViewGestures::PanUp() {
    const bool hasMoved = m_pan && m_pan->hasMoved;
    m_pan.reset();
    if (hasMoved) m_target.EndWork();
    return hasMoved;
}

void CViewGestures::PanTo(CPixel point) {
    if (point == m_pan->last) return;
    m_target.PanModel(point.x - m_pan->last.x, point.y - m_pan->last.y);
    *m_pan = {point, true};
    m_target.EndWork();
}

void CViewGestures::Key(EViewKey key, bool fine) {
    if (m_dragState != EDragState::Idle) return;
    const double turn = fine ? kKeyDeg / kFineShare : kKeyDeg;
    const int zoom = fine ? kKeyStep / kFineShare : kKeyStep;
    const int pan = std::max(1, m_target.ViewHeight() / (fine ? kPanShare * kFineShare : kPanShare));
    switch (key) {
        case EViewKey::TurnLeft:
            m_target.TurnModel(-turn, 0);
            break;
        case EViewKey::TurnRight:
            m_target.TurnModel(turn, 0);
            break;
        case EViewKey::TurnUp:
            m_target.TurnModel(0, turn);
            break;
        case EViewKey::TurnDown:
            m_target.TurnModel(0, -turn);
            break;
        case EViewKey::ZoomIn:
            m_target.ZoomModel(-zoom);
            break;
        case EViewKey::ZoomOut:
            m_target.ZoomModel(zoom);
            break;
        case EViewKey::PanLeft:
            m_target.PanModel(-pan, 0);
            break;
        case EViewKey::PanRight:
            m_target.PanModel(pan, 0);
            break;
        case EViewKey::PanUp:
            m_target.PanModel(0, -pan);
            break;
        case EViewKey::PanDown:
            m_target.PanModel(0, pan);
            break;
    }
    m_target.EndWork();
}

void CViewGestures::DoubleClick(int x, int y) {
    // The press may be held on, and what comes under it was not meant to be deleted.
    m_target.StopLongPress();
    if (m_zoomBox || (m_tools && m_tools->IsActive()) || !m_target.CenterModelAt(x, y)) return;
    m_target.EndWork();
}

void CViewGestures::LongPress(int x, int y) {
    if (!IsNearPress(x, y)) return;
    const char* node = m_target.PickNode(m_pressPoint.x, m_pressPoint.y);
    if (!node) return;
    // No EndWork: the node disappears at the next repaint, whatever its cause.
    const std::string name = node;  // a copy: the scene owns node and deletes it
    m_target.BeginWork();
    m_target.DeleteNode(name.c_str());
}

void CViewGestures::ResetTrackBall() {
    m_dragState = EDragState::Idle;
    m_dragPoint = {};
    m_trackBall.Reset();
}

std::optional<CPixel> CViewGestures::TakePendingDrag() {
    if (m_dragState != EDragState::Pending) return std::nullopt;
    m_dragState = EDragState::Dragging;
    return m_dragPoint;
}
