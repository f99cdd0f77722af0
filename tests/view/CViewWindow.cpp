// SPDX-License-Identifier: MIT
#include "view/CViewWindow.h"

#include <GL/gl.h>
#include <wx/app.h>
#include <wx/stopwatch.h>
#include <wx/utils.h>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "scene_builder/CSceneBuilder.h"
#include "scene_builder/shapes.h"

namespace {

constexpr long kLimitMs = 30'000;
constexpr int kQuietMs = 150;

void ServeEvents() {
    wxEventLoopBase::GetActive()->YieldFor(wxEVT_CATEGORY_ALL);
}

}  // namespace

CViewWindow::CViewWindow(CViewToolState* tools)
    : m_frame(new wxFrame(nullptr, wxID_ANY, "view", wxPoint(60, 60), wxSize(500, 400))),
      m_view(std::make_unique<CViewer3DSWindowHandler>(m_frame, tools)) {
    if (!m_view->GetCanvas()) return;
    m_view->SetOwner(this);
    wxWindow* canvas = m_view->GetCanvas()->GetWindow();
    canvas->Bind(wxEVT_PAINT, [this](wxPaintEvent& event) {
        ++m_paints;
        event.Skip();
    });
    m_frame->Show();
    m_frame->Raise();
    canvas->SetFocus();
    m_ready = WaitFor([&] { return m_paints > 0 && m_view->GetCanvas()->IsReady() && canvas->HasFocus(); });
    Settle();
}

CViewWindow::~CViewWindow() {
    m_view.reset();
    m_frame->Destroy();
    ServeEvents();
}

bool CViewWindow::WaitFor(const std::function<bool()>& condition) {
    const wxStopWatch watch;
    while (!condition()) {
        if (watch.Time() > kLimitMs) return false;
        ServeEvents();
        wxMilliSleep(2);
    }
    return true;
}

void CViewWindow::Settle() {
    const wxStopWatch watch;
    wxStopWatch quiet;
    int paints = m_paints;
    while (quiet.Time() < kQuietMs && watch.Time() < kLimitMs) {
        ServeEvents();
        wxMilliSleep(2);
        if (paints != m_paints) quiet.Start();
        paints = m_paints;
    }
}

void CViewWindow::Rest(int periodMs) {
    wxTimer alarm;
    bool over = false;
    alarm.Bind(wxEVT_TIMER, [&over](wxTimerEvent&) { over = true; });
    alarm.StartOnce(periodMs);
    while (!over) wxEventLoopBase::GetActive()->Dispatch();
}

void CViewWindow::MoveTo(int x, int y) {
    const wxPoint at = m_view->GetCanvas()->GetWindow()->ClientToScreen(wxPoint(x, y));
    m_hand.MouseMove(at.x, at.y);
    ServeEvents();
}

CImage CViewWindow::Picture() {
    Settle();
    CImage picture;
    const C2DRect& size = Engine().GetPreviewSize();
    picture.width = static_cast<int>(size.right);
    picture.height = static_cast<int>(size.bottom);
    const auto rowBytes = static_cast<std::size_t>(picture.width) * 4;
    picture.rgba.resize(rowBytes * static_cast<std::size_t>(picture.height));
    // Drawn once more, as what a swap leaves in the back buffer is nobody's promise.
    m_view->GetCanvas()->BeginGL();
    m_view->OnPaint();
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    for (int y = 0; y < picture.height; ++y)
        glReadPixels(0, picture.height - 1 - y, picture.width, 1, GL_RGBA, GL_UNSIGNED_BYTE,
                     &picture.rgba[static_cast<std::size_t>(y) * rowBytes]);
    return picture;
}

void SaveTwoBoxes(const std::string& path, int frames) {
    CSceneBuilder builder(frames);
    CMaterialValues red;
    red.color = {0.9f, 0.1f, 0.1f};
    red.selfIllumination = 1;
    builder.AddMaterial("Red", red);
    const CShape box = shapes::Box({10, 10, 10}).Material("Red");
    Lib3dsNode& left = builder.AddPart("Left", box, nullptr, {-10, 0, 0});
    builder.AddPart("Right", box, nullptr, {10, 0, 0});
    if (frames > 0) CSceneBuilder::MoveTo(left, frames, {-10, 0, 15});
    builder.Save(path);
}
