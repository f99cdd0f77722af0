// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/ui/CUploadDlg.h"

#include <wx/button.h>
#include <wx/iconbndl.h>
#include <wx/simplebook.h>
#include <wx/sizer.h>
#include <wx/statline.h>

#include <ctime>

#include "base/text/lng.h"
#include "files/std_file_paths.h"
#include "programs/upload_prepare/remembered_remote.h"
#include "programs/upload_prepare/ui/CConfirmPage.h"
#include "programs/upload_prepare/ui/COutcomePage.h"
#include "programs/upload_prepare/ui/CProgressPage.h"
#include "programs/upload_prepare/ui/open_places.h"
#include "programs/upload_prepare/upload_texts.h"
#include "widgets/ui/button_label.h"

using EState = CUpload::EState;

namespace {

constexpr int kPollMs = 100;
constexpr char kDriveAddress[] = "https://drive.google.com/drive/my-drive";

}  // namespace

CUploadDlg::CUploadDlg(wxWindow* parent, const CRcloneSetup& setup, const CUploadContent& content,
                       const std::string& modelName)
    : wxDialog(parent, wxID_ANY, lng::Text("Upload to Google Drive"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
      m_upload(setup, content.folder, RemoteFolderName(modelName, std::time(nullptr))),
      m_folder(content.folder) {
    const wxString icon = std_file_paths::GetImgPath(L"main.ico");
    SetIcons(wxIconBundle(icon, wxBITMAP_TYPE_ICO));
    m_book = new wxSimplebook(this);
    m_confirm = new CConfirmPage(m_book, content, modelName);
    m_progress = new CProgressPage(m_book);
    m_outcome = new COutcomePage(m_book);
    for (wxWindow* page : {static_cast<wxWindow*>(m_confirm), static_cast<wxWindow*>(m_progress),
                           static_cast<wxWindow*>(m_outcome)})
        m_book->AddPage(page, wxEmptyString);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(m_book, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(16)));
    column->Add(new wxStaticLine(this), wxSizerFlags().Expand());
    column->Add(MakeButtons(), wxSizerFlags().Expand().Border(wxALL, FromDIP(8)));
    SetSizerAndFit(column);
    CentreOnScreen();
    SetAffirmativeId(wxID_NONE);  // Enter confirms nothing
    SetEscapeId(wxID_CANCEL);
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { CancelOrClose(); }, wxID_CANCEL);
    Bind(wxEVT_TEXT_ENTER, [this](wxCommandEvent&) { Unlock(); });  // of the password
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { CancelOrClose(); });
    m_timer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTimer(); });
    m_timer.Start(kPollMs);
    ShowState();
}

wxButton* CUploadDlg::AddButton(wxSizer& row, int id, const std::wstring& text,
                                void (CUploadDlg::*action)()) {
    auto* button = new wxButton(this, id, text);
    button->Bind(wxEVT_BUTTON, [this, action](wxCommandEvent&) { (this->*action)(); });
    row.Add(button, wxSizerFlags().Border(wxALL, FromDIP(4)));
    return button;
}

wxSizer* CUploadDlg::MakeButtons() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    m_open = AddButton(*row, kIdOpen, lng::Text("Open the folder"), &CUploadDlg::OpenFolder);
    row->AddStretchSpacer();
    m_close = new wxButton(this, wxID_CANCEL, lng::Text("Cancel"));
    row->Add(m_close, wxSizerFlags().Border(wxALL, FromDIP(4)));
    m_again = AddButton(*row, kIdAgain, lng::Text("Try again"), &CUploadDlg::ShowReady);
    m_unlock = AddButton(*row, kIdUnlock, lng::Text("Unlock"), &CUploadDlg::Unlock);
    m_start = AddButton(*row, kIdUpload, lng::Text("Upload"), &CUploadDlg::StartUpload);
    return row;
}

void CUploadDlg::OnTimer() {
    if (m_upload.Poll()) ShowState();
}

void CUploadDlg::ShowState() {
    const EState state = m_upload.State();
    const bool isNew = m_shown != state;
    m_shown = state;
    if (isNew) ShowButtons();
    if (state == EState::Ready) {
        m_book->ChangeSelection(0);
        m_confirm->ShowRemotes(m_upload);
    } else if (state == EState::Looking || state == EState::Copying || state == EState::Linking) {
        m_progress->ShowUpload(m_upload);
        m_book->ChangeSelection(1);
        // Keys need a place; not a button, which the key that started the upload might press, too.
        if (isNew) m_progress->SetFocusIgnoringChildren();
    } else {
        m_book->ChangeSelection(2);
        m_close->SetFocus();
        m_outcome->ShowUpload(m_upload);
    }
}

void CUploadDlg::ShowButtons() {
    const EState state = m_upload.State();
    const bool hasEnded = state == EState::Done || state == EState::NoDrive;
    const bool maySendAgain = state == EState::Failed || state == EState::Cancelled;
    const bool isLocked = state == EState::NoDrive && m_upload.WhyNoDrive() == CUpload::ENoDrive::Locked;
    m_start->Show(state == EState::Ready);
    m_again->Show(maySendAgain);
    m_unlock->Show(isLocked);
    m_open->Show(hasEnded || maySendAgain || state == EState::Ready);
    m_open->SetLabel(state == EState::NoDrive ? lng::Text("Open the folder and Google Drive")
                                              : lng::Text("Open the folder"));
    SetButtonLabel(*m_close, hasEnded || maySendAgain ? lng::Text("Close") : lng::Text("Cancel"));
    m_close->Enable(state != EState::Linking);
    Layout();
}

void CUploadDlg::StartUpload() {
    remembered_remote::Keep(m_confirm->Remote());
    m_upload.Start(m_confirm->Remote(), m_confirm->WantsLinkForAnybody());
    ShowState();
}

void CUploadDlg::ShowReady() {
    m_shown.reset();
    m_book->ChangeSelection(0);
    m_again->Hide();
    m_start->Show();
    SetButtonLabel(*m_close, lng::Text("Cancel"));
    Layout();
}

void CUploadDlg::Unlock() {
    m_upload.Unlock(m_outcome->TakePassword());
    ShowState();
}

void CUploadDlg::OpenFolder() {
    std::vector<std::string> places{m_folder};
    if (m_upload.State() == EState::NoDrive) places.emplace_back(kDriveAddress);
    OpenPlaces(places);
}

void CUploadDlg::CancelOrClose() {
    if (m_upload.State() == EState::Copying) {
        m_upload.Cancel();
        ShowState();
    } else {
        m_timer.Stop();
        EndModal(wxID_CANCEL);
    }
}
