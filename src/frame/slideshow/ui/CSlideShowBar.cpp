// SPDX-License-Identifier: MIT
#include "frame/slideshow/ui/CSlideShowBar.h"

#include <wx/spinctrl.h>
#include <wx/stattext.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/text/lng.h"
#include "widgets/tools/ui/CToolBarKeys.h"
#include "widgets/tools/ui/tool_bar_art.h"
#include "widgets/tools/ui/tool_icon.h"
#include "widgets/ui/accessible_name.h"

CSlideShowBar::CSlideShowBar(wxWindow* parent, CActions actions)
    : wxAuiToolBar(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                   wxAUI_TB_DEFAULT_STYLE | wxAUI_TB_HORIZONTAL),
      m_actions(std::move(actions)),
      m_start(wxWindow::NewControlId()),
      m_fullScreen(wxWindow::NewControlId()) {
    SetArtProvider(MakeToolBarArt());
    CToolBarKeys::Give(*this);
    SetAccessibleName(*this, lng::Text("Slideshow"));
    SetToolBitmapSize(parent->FromDIP(wxSize(kToolIconSize, kToolIconSize)));
    const auto addTool = [this](int id, const char* icon, const wxString& tip) {
        AddTool(id, tip, LoadIcon(icon), LoadFadedIcon(icon), wxITEM_NORMAL, tip, tip, nullptr);
    };
    addTool(m_start, "slide_show.ico", lng::Text("Start Slideshow"));
    MakeField();
    addTool(m_fullScreen, "full_screen_show.ico", lng::Text("Full-screen slideshow"));
    Realize();
    Bind(
        wxEVT_TOOL, [this](wxCommandEvent&) { m_actions.toggle(); }, m_start);
    Bind(
        wxEVT_TOOL, [this](wxCommandEvent&) { m_actions.showFullScreen(); }, m_fullScreen);
    ShowButton(EShowButton::StartDisabled);
}

void CSlideShowBar::MakeField() {
    constexpr double kStep = 0.5;
    m_seconds = new wxSpinCtrlDouble(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                                     wxSP_ARROW_KEYS | wxTE_PROCESS_ENTER, kShortestMs / 1000.0,
                                     kLongestMs / 1000.0, 3.0, kStep);
    m_seconds->SetDigits(1);
    const std::wstring name = lng::Text("Seconds that each model is shown");
    m_seconds->SetToolTip(name);
    SetAccessibleName(*m_seconds, name);
    AddControl(m_seconds, name);
    const wxString unit = lng::TextIn("seconds", "s");
    AddLabel(wxID_ANY, unit, GetTextExtent(unit).x + FromDIP(6));
    m_seconds->Bind(wxEVT_SPINCTRLDOUBLE, [this](wxSpinDoubleEvent&) { TakeInterval(); });
    m_seconds->Bind(wxEVT_TEXT_ENTER, [this](wxCommandEvent&) {
        TakeInterval();
        m_actions.leave();
    });
    m_seconds->Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        if (event.GetKeyCode() == WXK_ESCAPE)
            m_actions.leave();
        else
            event.Skip();
    });
}

void CSlideShowBar::TakeInterval() {
    m_actions.setInterval(static_cast<int>(std::lround(m_seconds->GetValue() * 1000)));
}

void CSlideShowBar::ShowButton(EShowButton button) {
    const bool runs = button == EShowButton::Stop;
    const wxString tip = runs ? lng::Text("Stop Slideshow") : lng::Text("Start Slideshow");
    const char* icon = runs ? "stop.ico" : "slide_show.ico";
    wxAuiToolBarItem* tool = FindTool(m_start);
    tool->SetBitmap(LoadIcon(icon));
    tool->SetDisabledBitmap(LoadFadedIcon(icon));
    tool->SetLabel(tip);
    tool->SetShortHelp(tip);
    tool->SetLongHelp(tip);
    EnableTool(m_start, button != EShowButton::StartDisabled);
    EnableTool(m_fullScreen, button != EShowButton::StartDisabled);
    Refresh(false);
    CToolBarKeys::Of(*this)->ToolsChanged();
}

void CSlideShowBar::ShowInterval(int periodMs) {
    m_seconds->SetValue(std::clamp(periodMs, kShortestMs, kLongestMs) / 1000.0);
}
