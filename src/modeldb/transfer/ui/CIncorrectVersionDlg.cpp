// SPDX-License-Identifier: MIT
#include "modeldb/transfer/ui/CIncorrectVersionDlg.h"

#include <wx/button.h>
#include <wx/hyperlink.h>
#include <wx/sizer.h>
#include <wx/statline.h>
#include <wx/stattext.h>

#include "base/text/lng.h"
#include "files/std_file_paths.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/button_label.h"
#include "widgets/ui/run_job.h"

namespace {

void OpenInBrowser(const wxString& address) {
    CStatus opened = CDone{};
    RunJob([&](CJobProgress&) { opened = std_file_paths::LaunchBrowser(address.ToStdWstring()); });
    if (!opened) CUserPrompt::Instance().ShowMessage(lng::Text(opened.Error()));
}

}  // namespace

CIncorrectVersionDlg::CIncorrectVersionDlg(wxWindow* parent) : wxDialog(parent, wxID_ANY, "Orbivue") {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    // The blank at the end keeps the link off the text.
    auto* text = new wxStaticText(this, wxID_ANY, lng::Text("Please download the latest version of "));
    auto* link = new wxHyperlinkCtrl(this, wxID_ANY, "Orbivue.exe", ORBIVUE_DOWNLOAD_ADDRESS);
    link->Bind(wxEVT_HYPERLINK, [](wxHyperlinkEvent& event) { OpenInBrowser(event.GetURL()); });
    row->Add(text, wxSizerFlags().Expand());
    row->Add(link, wxSizerFlags().Expand());
    auto* ok = new wxButton(this, wxID_OK, lng::Text("OK"));
    SetButtonLabel(*ok, lng::Text("OK"));
    const int border = FromDIP(5);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(row, wxSizerFlags().Expand().Border(wxALL, border));
    column->Add(new wxStaticLine(this), wxSizerFlags().Expand().Border(wxALL, border));
    column->Add(ok, wxSizerFlags().Right().Border(wxALL, border));
    SetSizer(column);
    column->SetSizeHints(this);
    ok->SetDefault();
}
