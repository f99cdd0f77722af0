// SPDX-License-Identifier: MIT
#include "view/ui/CViewer3DSWindowHandler.h"

#include <GL/gl.h>

#include <array>
#include <utility>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "session/CSceneLook.h"
#include "view/pick_records.h"

CViewer3DSWindowHandler::CViewer3DSWindowHandler(wxWindow* parent, CViewToolState* tools)
    : m_tools(tools),
      m_gestures(*this, m_trackBall, tools),
      m_longPressTimer(this, wxWindow::NewControlId()),
      m_restTimer(this, wxWindow::NewControlId()) {
    SetCanvas(std::unique_ptr<CGLCanvasI>(CGLCanvasI::Create(this, parent)));
    Bind(
        wxEVT_TIMER, [this](wxTimerEvent&) { OnLongPress(); }, m_longPressTimer.GetId());
    Bind(
        wxEVT_TIMER, [this](wxTimerEvent&) { OnRest(); }, m_restTimer.GetId());
    GetEngine().SetInterrupt([this] { return IsInterrupted(); });
}

CViewer3DSWindowHandler::~CViewer3DSWindowHandler() {
    m_longPressTimer.Stop();
    m_restTimer.Stop();
    GetEngine().SetInterrupt({});
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
    Moved();
    EndWork();
}

void CViewer3DSWindowHandler::Present(const CSceneLook& look) {
    BeginWork();
    GetEngine().SetTextureRenderMode(look.textureMode);
    GetEngine().SetPivotOffset(look.pivot);
    GetEngine().SetScale(look.scale);
    GetEngine().SetBackgroundImage(look.backgroundImage);
    m_caption.Set(look.caption);
    Show(look.show);
}

bool CViewer3DSWindowHandler::SetCamera(const std::string& name) {
    BeginWork();
    const bool found = GetEngine().SetCameraOfName(name);
    if (found) m_gestures.ResetTrackBall();
    Moved();
    EndWork();
    return found;
}

bool CViewer3DSWindowHandler::SetFileCamera(const std::string& name) {
    m_gestures.ResetTrackBall();
    BeginWork();
    const bool found = GetEngine().SetFileCameraModel(name);
    Moved();
    EndWork();
    return found;
}

void CViewer3DSWindowHandler::SetPlaying(bool playing) {
    m_playing = playing;
    if (playing && GetCanvas()) GetCanvas()->OnModelOpened();
    AwaitRest();
}

void CViewer3DSWindowHandler::SetHint(CImage hint) {
    m_hint = std::move(hint);
    if (!GetEngine().Prepared()) Redraw();
}

void CViewer3DSWindowHandler::KeepPicture(EKeeping how) {
    if (std::exchange(m_keeping, how) != how) Redraw();
}

void CViewer3DSWindowHandler::SetCaption(std::wstring text) {
    m_caption.Set(std::move(text));
    Redraw();
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
    AwaitRest();
}

void CViewer3DSWindowHandler::Redraw() {
    EndWork();
}

void CViewer3DSWindowHandler::RedrawQuickly() {
    Moved();
    m_follows = true;
    EndWork();
}

void CViewer3DSWindowHandler::UpdateCursor() {
    if (m_tools) ShowCursor(m_tools->GetCursor());
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
