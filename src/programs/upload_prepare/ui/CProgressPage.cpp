// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/ui/CProgressPage.h"

#include <wx/gauge.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <algorithm>

#include "programs/upload_prepare/CUpload.h"
#include "programs/upload_prepare/ui/page_parts.h"
#include "programs/upload_prepare/upload_sentences.h"
#include "widgets/ui/accessible_name.h"

namespace {

constexpr int kRange = 1000;

}  // namespace

CProgressPage::CProgressPage(wxWindow* parent) : wxPanel(parent) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->AddStretchSpacer(2);
    m_heading = page_parts::AddHeading(this, *column, L" ");
    m_bar = new wxGauge(this, wxID_ANY, kRange, wxDefaultPosition, FromDIP(wxSize(520, 20)),
                        wxGA_HORIZONTAL | wxGA_SMOOTH);
    column->Add(m_bar, wxSizerFlags().Expand().Border(wxTOP | wxBOTTOM, FromDIP(8)));
    m_text = page_parts::AddText(this, *column, L" ");
    column->AddStretchSpacer(3);
    SetSizer(column);
}

void CProgressPage::ShowUpload(const CUpload& upload) {
    const std::wstring heading = upload_sentences::Of(upload).heading;
    if (m_heading->GetLabelText() != heading) {
        page_parts::ShowText(*m_heading, heading);
        SetAccessibleName(*m_bar, heading);
    }
    const rclone_output::CProgress& progress = upload.Progress();
    if (upload.State() == CUpload::EState::Copying && progress.totalBytes > 0) {
        const double share = static_cast<double>(progress.bytes) / static_cast<double>(progress.totalBytes);
        m_bar->SetValue(static_cast<int>(kRange * std::clamp(share, 0.0, 1.0)));
    } else {
        m_bar->Pulse();
    }
    page_parts::ShowText(*m_text, upload_sentences::Progress(upload));
    Layout();
}
