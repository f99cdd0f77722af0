// SPDX-License-Identifier: MIT
// What the view does with the events of its canvas, and what gestures do with the scene.
#include <wx/utils.h>
#include <wx/window.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "view/CKeyDownListener.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "view/ui/tool_cursors.h"

namespace {

/** The key that has the plus sign above another one reports that other one. */
constexpr std::array<CModelKey, 15> kModelKeys{{
    {WXK_LEFT, EViewKey::TurnLeft},
    {WXK_NUMPAD_LEFT, EViewKey::TurnLeft},
    {WXK_RIGHT, EViewKey::TurnRight},
    {WXK_NUMPAD_RIGHT, EViewKey::TurnRight},
    {WXK_UP, EViewKey::TurnUp},
    {WXK_NUMPAD_UP, EViewKey::TurnUp},
    {WXK_DOWN, EViewKey::TurnDown},
    {WXK_NUMPAD_DOWN, EViewKey::TurnDown},
    {'+', EViewKey::ZoomIn},
    {'=', EViewKey::ZoomIn},
    {WXK_ADD, EViewKey::ZoomIn},
    {WXK_NUMPAD_ADD, EViewKey::ZoomIn},
    {'-', EViewKey::ZoomOut},
    {WXK_SUBTRACT, EViewKey::ZoomOut},
    {WXK_NUMPAD_SUBTRACT, EViewKey::ZoomOut},
}};

constexpr std::array<CModelKey, 8> kPanKeys{{
    {WXK_LEFT, EViewKey::PanLeft},
    {WXK_NUMPAD_LEFT, EViewKey::PanLeft},
    {WXK_RIGHT, EViewKey::PanRight},
    {WXK_NUMPAD_RIGHT, EViewKey::PanRight},
    {WXK_UP, EViewKey::PanUp},
    {WXK_NUMPAD_UP, EViewKey::PanUp},
    {WXK_DOWN, EViewKey::PanDown},
    {WXK_NUMPAD_DOWN, EViewKey::PanDown},
}};

}  // namespace

// --- slots of the canvas ---------------------------------------------------------------------------------

void CViewer3DSWindowHandler::OnLeftDown(int x, int y) {
    Moved();  // a quick picture starts the drag
    m_gestures.LeftDown(x, y, wxGetKeyState(WXK_CONTROL));
}

void CViewer3DSWindowHandler::OnMouseMove(int x, int y, const bool& leftDown) {
    if (m_gestures.IsHeld()) Moved();
    m_gestures.Move(x, y, leftDown);
}

void CViewer3DSWindowHandler::OnLeftUp(int x, int y) {
    m_motion.Released(std::chrono::steady_clock::now());
    m_gestures.LeftUp(x, y);
    AwaitRest();
}

void CViewer3DSWindowHandler::OnRightDown(int, int) {
    if (m_owner) m_owner->OnViewRightButtonDown();
}

void CViewer3DSWindowHandler::OnWheel(int rotation) {
    Moved();
    m_gestures.Wheel(rotation);
}

void CViewer3DSWindowHandler::OnKeyDown(int keyCode) {
    if (m_owner) m_owner->OnViewKeyDown(keyCode);
}

void CViewer3DSWindowHandler::OnPanDown(int x, int y) {
    m_gestures.PanDown(x, y);
}

bool CViewer3DSWindowHandler::OnPanUp() {
    m_motion.Released(std::chrono::steady_clock::now());
    return m_gestures.PanUp();
}

void CViewer3DSWindowHandler::OnDoubleClick(int x, int y) {
    m_gestures.DoubleClick(x, y);
}

void CViewer3DSWindowHandler::OnWheelAt(int x, int y, int rotation) {
    Moved();
    m_gestures.WheelAt(x, y, rotation);
}

void CViewer3DSWindowHandler::OnPinch(int x, int y, double factor) {
    Moved();
    m_gestures.Pinch(x, y, factor);
}

bool CViewer3DSWindowHandler::OnModelKey(int keyCode, bool shiftDown) {
    return ActOnKey(kModelKeys, keyCode, shiftDown);
}

bool CViewer3DSWindowHandler::OnPanKey(int keyCode, bool shiftDown) {
    return ActOnKey(kPanKeys, keyCode, shiftDown);
}

bool CViewer3DSWindowHandler::ActOnKey(std::span<const CModelKey> keys, int keyCode, bool shiftDown) {
    const auto found = std::ranges::find(keys, keyCode, &CModelKey::keyCode);
    if (found == keys.end() || !GetEngine().Prepared()) return false;
    Moved();
    m_gestures.Key(found->key, shiftDown);
    return true;
}

bool CViewer3DSWindowHandler::OnAnimationTick() {
    if (!m_playing) return false;
    const bool plays = C3DSWindowHandler::OnAnimationTick();
    if (plays && m_frameListener) m_frameListener();
    return plays;
}

void CViewer3DSWindowHandler::OnLongPress() {
    if (!GetCanvas() || m_showsCoarse) return;
    wxWindow* window = GetCanvas()->GetWindow();
    const wxPoint mouse = window->ScreenToClient(wxGetMousePosition());
    const double scale = window->GetContentScaleFactor();
    m_gestures.LongPress(static_cast<int>(std::floor(mouse.x * scale)),
                         static_cast<int>(std::floor(mouse.y * scale)));
}

// --- what gestures act upon ------------------------------------------------------------------------------

int CViewer3DSWindowHandler::ViewHeight() const {
    const C2DRect& view = GetEngine().GetPreviewSize();
    return static_cast<int>(std::abs(view.bottom - view.top));
}

void CViewer3DSWindowHandler::ZoomModel(int step) {
    GetEngine().ZoomModel(step);
}

void CViewer3DSWindowHandler::ZoomModel(const C2DRect& box) {
    GetEngine().ZoomModel(box);
}

void CViewer3DSWindowHandler::ZoomModelAt(int step, int x, int y) {
    GetEngine().ZoomModelAt(step, x, y);
}

void CViewer3DSWindowHandler::PanModel(int dx, int dy) {
    GetEngine().PanModel(dx, dy);
}

void CViewer3DSWindowHandler::TurnModel(double rightDeg, double upDeg) {
    const CMatrix4d view = CMatrix4d::From(SeenView().ViewMatrix());
    const auto axis = [&view](std::size_t row) {
        return CVec3d{view.m[row], view.m[row + 4], view.m[row + 8]};
    };
    constexpr double kDegree = std::numbers::pi / 180;
    m_trackBall.Turn(axis(1), rightDeg * kDegree);
    m_trackBall.Turn(axis(0), -upDeg * kDegree);
}

bool CViewer3DSWindowHandler::CenterModelAt(int x, int y) {
    (void)SeenView();  // with the turn of the drag that the first press may have begun
    return GetEngine().CenterModelAt(x, y);
}

void CViewer3DSWindowHandler::DeleteNode(const char* name) {
    if (m_nodeDeleter)
        m_nodeDeleter(name);
    else
        (void)GetEngine().DeleteNode(name);  // a node that no longer exists needs no deletion
}

void CViewer3DSWindowHandler::StartLongPress(int periodMs) {
    m_longPressTimer.StartOnce(periodMs);
}

void CViewer3DSWindowHandler::StopLongPress() {
    m_longPressTimer.Stop();
}

void CViewer3DSWindowHandler::ShowCursor(EToolCursor cursor) {
    if (cursor == m_cursor || !GetCanvas()) return;
    m_cursor = cursor;
    ShowToolCursor(*GetCanvas()->GetWindow(), cursor);
}

void CViewer3DSWindowHandler::TellLeftButtonDown() {
    if (m_owner) m_owner->OnViewLeftButtonDown();
}

void CViewer3DSWindowHandler::BeginWork() {
    if (GetCanvas()) GetCanvas()->BeginGL();
}

void CViewer3DSWindowHandler::EndWork() {
    if (GetCanvas()) GetCanvas()->EndGL();
}
