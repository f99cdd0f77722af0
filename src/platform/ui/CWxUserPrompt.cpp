// SPDX-License-Identifier: MIT
#include "platform/ui/CWxUserPrompt.h"

#include <wx/app.h>
#include <wx/msgdlg.h>
#include <wx/utils.h>

namespace {

int Show(const std::wstring& text, long style) {
    return wxMessageBox(text, wxTheApp->GetAppName(), style, wxTheApp->GetTopWindow());
}

}  // namespace

void CWxUserPrompt::ShowMessage(const std::wstring& text) {
    Show(text, wxOK | wxCENTRE);
}

bool CWxUserPrompt::AskYesNo(const std::wstring& text) {
    return Show(text, wxYES_NO | wxCENTRE | wxICON_QUESTION) == wxYES;
}

void CWxUserPrompt::BeginBusy() {
    wxBeginBusyCursor();
}

void CWxUserPrompt::EndBusy() {
    wxEndBusyCursor();
}
