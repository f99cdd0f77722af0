// SPDX-License-Identifier: MIT
#include "frame/CFrameWindow.h"

#include <wx/app.h>

#include <utility>

#include "engine/CGLCanvasI.h"
#include "files/file_util_ex.h"
#include "view/ui/CViewer3DSWindowHandler.h"

CFrameWindow::CFrameWindow() {
    auto recorded = std::make_unique<CRecordedPrompt>();
    prompt = recorded.get();
    m_promptBefore = CUserPrompt::Install(std::move(recorded));
    [[maybe_unused]] static const bool s_once = (wxInitAllImageHandlers(), true);
    CLocalRegStore::Load(file_util_ex::ConvertFromUTF8W(folder / "settings.ini"));
    ShowFrame();
}

CFrameWindow::~CFrameWindow() {
    if (m_frame) m_frame->Close(true);
    wxTheApp->ProcessIdle();  // windows are deleted when there is nothing else to do
    CUserPrompt::Install(std::move(m_promptBefore));
}

void CFrameWindow::ShowFrame() {
    m_frame = new CAViewerFrame("Orbivue");
    if (!m_frame->HasView()) return;
    m_frame->Show();
    m_frame->Raise();
    const CGLCanvasI* canvas = m_frame->View().GetCanvas();
    m_ready = WaitFor([&] { return canvas->IsReady() && m_frame->IsActive(); });
    m_frame->View().GetCanvas()->GetWindow()->SetFocus();
    m_ready = m_ready && WaitFor([&] { return m_frame->View().GetCanvas()->GetWindow()->HasFocus(); });
}

C3dsDisplayWrap& CFrameWindow::Engine() {
    return m_frame->View().GetEngine();
}

void CFrameWindow::StartAgain() {
    m_frame->Close();
    wxTheApp->ProcessIdle();
    (void)CSettings::Instance().WriteAll();
    CSettings::Instance() = CSettings();
    CLocalRegStore::Load(file_util_ex::ConvertFromUTF8W(folder / "settings.ini"));
    CSettings::Instance().ReadAll();
    ShowFrame();
}

void CFrameWindow::Press(int key, int modifiers) {
    m_hand.Char(key, modifiers);
    wxEventLoopBase::GetActive()->YieldFor(wxEVT_CATEGORY_ALL);
}
