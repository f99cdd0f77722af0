// SPDX-License-Identifier: MIT
#include "widgets/ui/CWxUserPrompt.h"

#include <wx/app.h>
#include <wx/msgdlg.h>
#include <wx/utils.h>

#include "base/text/utf8_text.h"

CWxUserPrompt::CWxUserPrompt() {
    m_modalDialogs.Register();
}

int CWxUserPrompt::Show(const std::wstring& text, long style) const {
    // With the top window as parent the box would open behind a modal dialog.
    wxWindow* parent = m_modalDialogs.Last();
    return wxMessageBox(file_util_ex::ShownText(text), wxTheApp->GetAppName(), style,
                        parent ? parent : wxTheApp->GetTopWindow());
}

void CWxUserPrompt::ShowMessage(const std::wstring& text) {
    Show(text, wxOK | wxCENTRE);
}

bool CWxUserPrompt::AskYesNo(const std::wstring& text) {
    return Show(text, wxYES_NO | wxNO_DEFAULT | wxCENTRE | wxICON_QUESTION) == wxYES;
}

void CWxUserPrompt::BeginBusy() {
    wxBeginBusyCursor();
}

void CWxUserPrompt::EndBusy() {
    wxEndBusyCursor();
}
