// SPDX-License-Identifier: MIT
#include "view/ui/CViewer3DSWindowHandler.h"

#include <GL/gl.h>
#include <wx/cursor.h>
#include <wx/utils.h>
#include <wx/window.h>

#include <array>
#include <cmath>
#include <utility>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "view/CKeyDownListener.h"
#include "view/pick_records.h"

namespace {

wxCursor CursorOf(EToolCursor cursor) {
    switch (cursor) {
        case EToolCursor::Color:
            return wxCursor(wxCURSOR_PAINT_BRUSH);
        case EToolCursor::Shininess:
            return wxCursor(wxCURSOR_SPRAYCAN);
        case EToolCursor::Transparency:
            return wxCursor(wxCURSOR_MAGNIFIER);
        case EToolCursor::ReplaceNode:
            return wxCursor(wxCURSOR_HAND);
        case EToolCursor::Standard:
            break;
    }
    return wxCursor(wxCURSOR_ARROW);
}

}  // namespace

CViewer3DSWindowHandler::CViewer3DSWindowHandler(wxWindow* parent, CViewToolState* tools)
    : m_gestures(*this, m_trackBall, tools), m_longPressTimer(this, wxWindow::NewControlId()) {
    SetCanvas(std::unique_ptr<CGLCanvasI>(CGLCanvasI::Create(this, parent)));
    Bind(
        wxEVT_TIMER, [this](wxTimerEvent&) { OnLongPress(); }, m_longPressTimer.GetId());
}

CViewer3DSWindowHandler::~CViewer3DSWindowHandler() {
    m_longPressTimer.Stop();
}

void CViewer3DSWindowHandler::WhenReady(std::function<void()> work) {
    if (GetCanvas() && GetCanvas()->IsReady())
        work();
    else
        m_whenReady = std::move(work);
}

// --- how it is shown -------------------------------------------------------------------------------------

void CViewer3DSWindowHandler::SetPreset(ECameraPreset preset) {
    m_gestures.ResetTrackBall();
    BeginWork();
    GetEngine().SetPreset(preset);
    EndWork();
}

bool CViewer3DSWindowHandler::SetFileCamera(const std::string& name) {
    m_gestures.ResetTrackBall();
    BeginWork();
    const bool found = GetEngine().SetFileCameraModel(name);
    EndWork();
    return found;
}

void CViewer3DSWindowHandler::SetPlaying(bool playing) {
    m_playing = playing;
    if (playing && GetCanvas()) GetCanvas()->OnModelOpened();
}

void CViewer3DSWindowHandler::SetHint(CImage hint) {
    m_hint = std::move(hint);
    if (!GetEngine().Prepared()) Redraw();
}

void CViewer3DSWindowHandler::ResetView() {
    m_gestures.ResetTrackBall();
}

void CViewer3DSWindowHandler::Show(const CShowState& show) {
    GetEngine().SetWireframe(show.wire);
    GetEngine().SetBkColors(show.background.x, show.background.y, show.background.z);
    GetEngine().SetOverlays(
        {.bounds = show.bounds, .cameras = show.cameras, .lights = show.lights, .axes = show.axes});
    SetRotate(show.rotate);
    Redraw();
}

CShowState CViewer3DSWindowHandler::Shown() const {
    const CSeenView& seen = GetEngine().SeenView();
    const COverlays& overlays = GetEngine().Overlays();
    return {.wire = seen.wire,
            .rotate = m_rotate,
            .bounds = overlays.bounds,
            .cameras = overlays.cameras,
            .lights = overlays.lights,
            .axes = overlays.axes,
            .background = seen.background};
}

void CViewer3DSWindowHandler::SetWireframe(bool wireframe) {
    GetEngine().SetWireframe(wireframe);
}

void CViewer3DSWindowHandler::SetPivotOffset(double x, double y, double z) {
    GetEngine().SetPivotOffset({x, y, z});
}

void CViewer3DSWindowHandler::SetScale(double x, double y, double z) {
    GetEngine().SetScale({x, y, z});
}

void CViewer3DSWindowHandler::SetRotate(bool rotate) {
    m_rotate = rotate;
    if (GetCanvas()) GetCanvas()->SetRotating(m_rotate && GetEngine().Prepared());
}

void CViewer3DSWindowHandler::Redraw() {
    EndWork();
}

const char* CViewer3DSWindowHandler::PickNode(int x, int y) {
    BeginWork();
    std::array<GLuint, kSelectionWords> words{};
    glSelectBuffer(kSelectionWords, words.data());
    (void)glRenderMode(GL_SELECT);  // the result belongs to the mode before, plain drawing, and means nothing
    glInitNames();
    glPushName(0xFFFFFFFFu);
    DrawFrame(GL_SELECT, x, y);
    const auto name = NearestName(glRenderMode(GL_RENDER), words);
    return name ? GetEngine().GetNodeNameById(*name) : nullptr;
}

// --- slots of the canvas ---------------------------------------------------------------------------------

void CViewer3DSWindowHandler::OnPaint() {
    DrawFrame(GL_RENDER, -1, -1);
    // Not inside the paint event: the work may take long, and the empty view should be visible meanwhile.
    if (m_whenReady) CallAfter([work = std::exchange(m_whenReady, nullptr)] { work(); });
}

void CViewer3DSWindowHandler::OnLeftDown(int x, int y) {
    m_gestures.LeftDown(x, y, wxGetKeyState(WXK_CONTROL));
}

void CViewer3DSWindowHandler::OnMouseMove(int x, int y, const bool& leftDown) {
    m_gestures.Move(x, y, leftDown);
}

void CViewer3DSWindowHandler::OnLeftUp(int x, int y) {
    m_gestures.LeftUp(x, y);
}

void CViewer3DSWindowHandler::OnRightDown(int, int) {
    if (m_owner) m_owner->OnViewRightButtonDown();
}

void CViewer3DSWindowHandler::OnWheel(int rotation) {
    m_gestures.Wheel(rotation);
}

void CViewer3DSWindowHandler::OnKeyDown(int keyCode) {
    if (m_owner) m_owner->OnViewKeyDown(keyCode);
}

bool CViewer3DSWindowHandler::OnAnimationTick() {
    if (!m_playing) return false;
    const bool plays = C3DSWindowHandler::OnAnimationTick();
    if (plays && m_frameListener) m_frameListener();
    return plays;
}

void CViewer3DSWindowHandler::OnLongPress() {
    if (!GetCanvas()) return;
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
    GetCanvas()->GetWindow()->SetCursor(CursorOf(cursor));
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
