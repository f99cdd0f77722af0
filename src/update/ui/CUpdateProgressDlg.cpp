// SPDX-License-Identifier: MIT
#include "update/ui/CUpdateProgressDlg.h"

#include <wx/button.h>
#include <wx/gauge.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "base/text/lng.h"
#include "widgets/ui/accessible_name.h"
#include "widgets/ui/button_label.h"

namespace {

constexpr int kTickMs = 100;

}  // namespace

CUpdateProgressDlg::CUpdateProgressDlg(wxWindow* parent, const CJob::CWork& check)
    : wxDialog(parent, wxID_ANY, lng::Text("Check for updates")), m_job(check) {
    const int border = FromDIP(12);
    const std::wstring what = lng::Text("Looking for a new version of Orbivue...");
    auto* text = new wxStaticText(this, wxID_ANY, what);
    m_gauge = new wxGauge(this, wxID_ANY, 100, wxDefaultPosition, wxSize(FromDIP(320), -1),
                          wxGA_HORIZONTAL | wxGA_SMOOTH);
    SetAccessibleName(*m_gauge, what);
    auto* cancel = new wxButton(this, wxID_CANCEL, lng::Text("Cancel"));
    SetButtonLabel(*cancel, lng::Text("Cancel"));
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(text, wxSizerFlags().Border(wxALL, border));
    column->Add(m_gauge, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, border));
    column->Add(cancel, wxSizerFlags().Right().Border(wxALL, border));
    SetSizerAndFit(column);
    CentreOnParent();
    cancel->SetFocus();
    m_timer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTick(); });
    m_timer.Start(kTickMs);
}

void CUpdateProgressDlg::OnTick() {
    m_gauge->Pulse();
    if (IsModal() && m_job.HasEndedWithin(std::chrono::milliseconds(0))) EndModal(wxID_OK);
}
