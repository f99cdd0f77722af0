// SPDX-License-Identifier: MIT
#include "update/ui/CUpdateBar.h"

#include <gtk/gtk.h>
#include <wx/app.h>
#include <wx/aui/framemanager.h>
#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/toplevel.h>

#include <utility>

#include "base/text/lng.h"
#include "widgets/ui/accessible_name.h"
#include "widgets/ui/button_label.h"

namespace {

/** The window's keys go to what has the focus, which must not be nothing. */
void FocusCentre(wxAuiManager& manager) {
    const wxAuiPaneInfoArray& panes = manager.GetAllPanes();
    for (std::size_t i = 0; i < panes.size(); ++i)
        if (panes[i].dock_direction == wxAUI_DOCK_CENTER) panes[i].window->SetFocus();
}

}  // namespace

CUpdateBar::CUpdateBar(wxTopLevelWindow& window, const std::wstring& version, CActions actions)
    : wxPanel(&window), m_window(window), m_actions(std::move(actions)) {
    const wxString sentence = lng::Text("A new version of Orbivue is available: %s.", version);
    // The text gives way where the window is narrow, the buttons do not.
    auto* text =
        new wxStaticText(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize, wxST_ELLIPSIZE_END);
    text->SetLabelText(sentence);
    text->SetToolTip(sentence);
    text->SetMinSize(wxSize(FromDIP(40), -1));
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(text, wxSizerFlags(1).CenterVertical().Border(wxLEFT | wxRIGHT, FromDIP(10)));
    AddButton(*row, lng::Text("What is new..."), m_actions.showMore);
    AddButton(*row, lng::Text("Later"), m_actions.leave);
    SetSizerAndFit(row);
    SetAccessibleName(*this, sentence.ToStdWstring());
    atk_object_set_role(gtk_widget_get_accessible(GetHandle()), ATK_ROLE_INFO_BAR);
    AddPane();
    m_window.Bind(wxEVT_SIZE, &CUpdateBar::OnWindowSize, this);
    CallAfter([this] { FitButtons(); });
}

CUpdateBar::~CUpdateBar() {
    m_window.Unbind(wxEVT_SIZE, &CUpdateBar::OnWindowSize, this);
}

void CUpdateBar::AddButton(wxSizer& row, const std::wstring& label, const std::function<void()>& press) {
    auto* button = new wxButton(this, wxID_ANY, label);
    SetButtonLabel(*button, label);
    // Later, as the window, or this bar, does not outlive what is asked for.
    button->Bind(wxEVT_BUTTON, [press](wxCommandEvent&) { wxTheApp->CallAfter(press); });
    row.Add(button, wxSizerFlags().CenterVertical().Border(wxTOP | wxBOTTOM | wxRIGHT, FromDIP(4)));
}

void CUpdateBar::AddPane() {
    wxAuiManager* manager = wxAuiManager::GetManager(&m_window);
    if (manager == nullptr) return;
    constexpr int kBelowToolBars = 9;  // which the toolkit gives 10
    manager->AddPane(this, wxAuiPaneInfo()
                               .Name("update")
                               .Top()
                               .Layer(kBelowToolBars)
                               .CaptionVisible(false)
                               .CloseButton(false)
                               .PaneBorder(false)
                               .DockFixed()
                               .BestSize(GetBestSize())
                               .Show(!m_window.IsFullScreen()));
    manager->Update();
}

void CUpdateBar::OnWindowSize(wxSizeEvent& event) {
    event.Skip();
    CallAfter([this] { FollowWindow(); });
}

void CUpdateBar::FitButtons() {
    for (wxWindow* child : GetChildren()) child->InvalidateBestSize();
    Layout();
}

void CUpdateBar::FollowWindow() {
    FitButtons();
    wxAuiManager* manager = wxAuiManager::GetManager(&m_window);
    if (manager == nullptr) return;
    wxAuiPaneInfo& pane = manager->GetPane(this);
    if (!pane.IsOk() || pane.IsShown() == !m_window.IsFullScreen()) return;
    if (pane.IsShown() && IsDescendant(FindFocus())) FocusCentre(*manager);
    pane.Show(!m_window.IsFullScreen());
    manager->Update();
}

void CUpdateBar::Leave() {
    const bool hasFocus = IsDescendant(FindFocus());
    Hide();
    if (wxAuiManager* manager = wxAuiManager::GetManager(&m_window)) {
        manager->DetachPane(this);
        manager->Update();
        if (hasFocus) FocusCentre(*manager);
    }
    wxTheApp->ScheduleForDestruction(this);
}
