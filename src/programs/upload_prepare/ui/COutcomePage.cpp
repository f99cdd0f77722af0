// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/ui/COutcomePage.h"

#include <wx/button.h>
#include <wx/clipbrd.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "programs/upload_prepare/CUpload.h"
#include "programs/upload_prepare/ui/open_places.h"
#include "programs/upload_prepare/ui/page_parts.h"
#include "programs/upload_prepare/upload_sentences.h"
#include "widgets/ui/accessible_name.h"

using EState = CUpload::EState;

COutcomePage::COutcomePage(wxWindow* parent) : wxPanel(parent) {
    const wxSizerFlags line = wxSizerFlags().Expand().Border(wxBOTTOM, FromDIP(8));
    auto* column = new wxBoxSizer(wxVERTICAL);
    m_heading = page_parts::AddHeading(this, *column, L" ");
    m_text = page_parts::AddText(this, *column, L" ");
    column->Add(MakeLink(), line);
    m_password = new wxTextCtrl(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                                wxTE_PASSWORD | wxTE_PROCESS_ENTER);
    SetAccessibleName(*m_password, lng::Text("rclone's configuration has a password"));
    column->Add(m_password, line);
    m_errors = page_parts::MakeReadOnly(this, lng::Text("rclone says:"), wxTE_MULTILINE);
    m_errors->SetMinSize(FromDIP(wxSize(520, 110)));
    column->Add(m_errors, wxSizerFlags(1).Expand().Border(wxBOTTOM, FromDIP(8)));
    m_hint = page_parts::AddText(this, *column, L" ");
    SetSizer(column);
}

wxSizer* COutcomePage::MakeLink() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    m_link = page_parts::MakeReadOnly(this, lng::Text("Link"));
    m_copy = new wxButton(this, wxID_ANY, lng::Text("Copy link"));
    m_open = new wxButton(this, wxID_ANY, lng::Text("Open in browser"));
    m_copy->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { CopyLink(); });
    m_open->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { OpenLink(); });
    row->Add(m_link, wxSizerFlags(1).CenterVertical());
    row->Add(m_copy, wxSizerFlags().Border(wxLEFT, FromDIP(8)));
    row->Add(m_open, wxSizerFlags().Border(wxLEFT, FromDIP(8)));
    return row;
}

void COutcomePage::ShowUpload(const CUpload& upload) {
    const upload_sentences::CState state = upload_sentences::Of(upload);
    page_parts::ShowText(*m_heading, state.heading);
    page_parts::ShowText(*m_text, state.text);
    const bool isDone = upload.State() == EState::Done;
    const bool hasLink = isDone && !upload.Address().empty();
    const bool showsPlace = isDone || upload.State() == EState::Cancelled;
    m_link->Show(showsPlace);
    m_link->ChangeValue(page_parts::Shown(hasLink ? upload.Address() : upload.RemoteFolder()));
    m_copy->Show(hasLink);
    m_open->Show(hasLink);
    const bool isLocked =
        upload.State() == EState::NoDrive && upload.WhyNoDrive() == CUpload::ENoDrive::Locked;
    m_password->Show(isLocked);
    wxString errors;
    if (!isLocked || upload.Errors().size() > 1)
        for (const std::string& error : upload.Errors()) errors += lng::ConvertFromUTF8(error) + L'\n';
    m_errors->ChangeValue(errors);
    m_errors->Show(!errors.empty());
    page_parts::ShowText(
        *m_hint,
        isDone ? lng::Text("Google Drive keeps the page but does not run it: download the folder and open "
                           "index.html in it, or put the folder on a web server.")
               : std::wstring());
    if (isLocked) m_password->SetFocus();
    if (hasLink) m_copy->SetFocus();
    Layout();
}

std::string COutcomePage::TakePassword() {
    std::string password = file_util_ex::ConvertToUTF8(m_password->GetValue().ToStdWstring());
    m_password->Clear();
    return password;
}

void COutcomePage::CopyLink() {
    const wxClipboardLocker clipboard;
    if (!clipboard) return;
    wxTheClipboard->SetData(new wxTextDataObject(m_link->GetValue()));
    wxTheClipboard->Flush();  // so that it outlives this program
    m_copy->SetLabel(lng::Text("Copied"));
}

void COutcomePage::OpenLink() {
    OpenPlaces({file_util_ex::ConvertToUTF8(m_link->GetValue().ToStdWstring())});
}
