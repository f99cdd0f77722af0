// SPDX-License-Identifier: MIT
#include "app/ui/CPlainFrame.h"

#include <wx/intl.h>
#include <wx/utils.h>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "settings/CSettings.h"
#include "view/ui/CViewer3DSWindowHandler.h"

CPlainFrame::CPlainFrame(const wxString& title)
    : wxFrame(nullptr, wxID_ANY, title, wxDefaultPosition, wxSize(1024, 768)),
      m_view(std::make_unique<CViewer3DSWindowHandler>(this, &m_tools)) {
    if (!HasView()) return;
    m_view->SetOwner(this);
    ApplySettings();
    m_view->GetCanvas()->GetWindow()->SetFocus();
}

CPlainFrame::~CPlainFrame() = default;

bool CPlainFrame::HasView() const {
    return m_view->GetCanvas() != nullptr;
}

void CPlainFrame::ApplySettings() {
    const CSettings& settings = CSettings::Instance();
    const auto channel = [](unsigned value) { return static_cast<float>(value) / 255.0f; };
    C3dsDisplayWrap& engine = m_view->GetEngine();
    engine.SetBkColors(channel(settings.bkColorR), channel(settings.bkColorG), channel(settings.bkColorB));
    engine.SetShowBounds(settings.showBounds);
    engine.SetShowCameras(settings.showCameras);
    engine.SetShowLights(settings.showLights);
    engine.SetShowAxis(settings.showAxis);
    m_view->SetWireframe(settings.wireFrame);
    m_view->SetRotate(settings.rotate);
}

void CPlainFrame::OpenByPath(const std::wstring& path) {
    m_view->WhenReady([this, path] { OpenNow(path); });
}

void CPlainFrame::OpenNow(const std::wstring& path) {
    const wxBusyCursor busy;
    const bool opened = m_view->OpenModel(path.c_str());
    const wxString title = wxString("Orbivue - ") + path;
    SetTitle(opened ? title : title + " - " + _("File open failed"));
}

void CPlainFrame::OnViewKeyDown(int keyCode) {
    if (keyCode == WXK_ESCAPE && CSettings::Instance().closeOnEsc) Close(true);
}
