// SPDX-License-Identifier: MIT
#include "platform/ui/CWxUserPrompt.h"

#include <wx/app.h>
#include <wx/dialog.h>
#include <wx/msgdlg.h>
#include <wx/utils.h>

namespace {

// A box over the top window alone would open behind a dialog that asks.
wxWindow* Parent() {
    for (auto node = wxTopLevelWindows.GetLast(); node; node = node->GetPrevious()) {
        auto* dialog = dynamic_cast<wxDialog*>(node->GetData());
        if (dialog && dialog->IsModal() && dialog->IsShown()) return dialog;
    }
    return wxTheApp->GetTopWindow();
}

int Show(const std::wstring& text, long style) {
    return wxMessageBox(text, wxTheApp->GetAppName(), style, Parent());
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
