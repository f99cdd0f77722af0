// SPDX-License-Identifier: MIT
#include "modeldb/upload/ui/CUploadDialog.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/statline.h>
#include <wx/stattext.h>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "modeldb/transfer/ui/CProgCtrl.h"
#include "modeldb/transfer/ui/progress_text.h"
#include "modeldb/transfer/ui/transfer_events.h"
#include "modeldb/upload/ui/CUploadModelThread.h"
#include "widgets/ui/accessible_name.h"
#include "widgets/ui/button_label.h"

CUploadDialog::CUploadDialog(wxWindow* parent, const std::wstring& path, unsigned char* data,
                             std::uint32_t size, const CImageDataTextVec& textures)
    : wxDialog(parent, wxID_ANY, lng::Text("3ds File Upload Status")),
      m_thread(std::make_unique<CUploadModelThread>(this, wxEVT_UPLOAD_COMMAND, path, data, size, textures)) {
    MakeControls(path);
    Bind(wxEVT_UPLOAD_COMMAND, &CUploadDialog::OnThread, this);
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { Cancel(); }, wxID_CANCEL);
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Cancel(); });
}

CUploadDialog::~CUploadDialog() {
    if (!m_thread) return;
    m_thread->StartKill();
    m_thread->Wait();
}

void CUploadDialog::MakeControls(const std::wstring& path) {
    const std::wstring name = file_util_ex::ShownName(file_util_ex::GetFileName(path));
    auto* text = new wxStaticText(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                                  wxST_NO_AUTORESIZE | wxST_ELLIPSIZE_MIDDLE);
    text->SetLabelText(lng::Text("File name: %s", name));
    m_gauge = new CProgCtrl(this);
    SetAccessibleName(*m_gauge, lng::Text("Progress of the transfer"));
    // As wide as the longest of its texts.
    m_status = new wxStaticText(this, wxID_ANY, lng::Text("Status: Please wait - Canceling... "),
                                wxDefaultPosition, wxDefaultSize, wxST_NO_AUTORESIZE);
    m_status->SetMinSize(m_status->GetBestSize());
    text->SetMinSize(wxSize(48 * GetCharWidth(), -1));  // the title has room, too
    m_status->SetLabel(lng::Text("Status: Starting..."));
    auto* cancel = new wxButton(this, wxID_CANCEL, lng::Text("Cancel"));
    SetButtonLabel(*cancel, lng::Text("Cancel"));
    const wxSizerFlags line = wxSizerFlags().Expand().Border(wxALL, FromDIP(5));
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(text, line);
    column->Add(m_gauge, line);
    column->Add(m_status, line);
    column->Add(new wxStaticLine(this), line);
    column->Add(cancel, wxSizerFlags().Right().Border(wxALL, FromDIP(5)));
    SetSizerAndFit(column);
    CentreOnParent();
}

bool CUploadDialog::Show(bool show) {
    const bool hasChanged = wxDialog::Show(show);
    if (show && m_thread && !m_hasStarted) {
        m_hasStarted = true;
        if (!m_thread->RunThread()) CallAfter([this] { End(); });
    }
    return hasChanged;
}

void CUploadDialog::OnThread(wxGUIThreadEvent& event) {
    switch (event.GetId()) {
        case transfer_event::kUploadStart:
            m_gauge->OnProgressStart(event.Value());
            m_status->SetLabel(lng::Text("Status: Uploading..."));
            break;
        case transfer_event::kUploadStep:
            m_gauge->OnProgressStep();
            m_status->SetLabel(PercentText(lng::Text("Status: Uploading  %.2f"), m_gauge->Percent()));
            break;
        case transfer_event::kUploadEnd:
            End();
            break;
        default:
            event.Skip();
    }
}

void CUploadDialog::Cancel() {
    if (m_isCancelling) return;
    m_status->SetLabel(lng::Text("Status: Please wait - Canceling... "));
    m_gauge->SetDeterminate();
    m_isCancelling = true;
    if (m_thread) m_thread->StopPainting();
    m_thread.reset();
    m_isCancelling = false;
    End();
}

/** Once; the last event of a thread that was cancelled comes later. */
void CUploadDialog::End() {
    if (IsModal()) EndModal(wxID_CANCEL);
}
