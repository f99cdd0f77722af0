// SPDX-License-Identifier: MIT
#include "widgets/ui/CWxUserPrompt.h"

#include <wx/app.h>
#include <wx/msgdlg.h>
#include <wx/utils.h>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"

CWxUserPrompt::CWxUserPrompt() {
    m_modalDialogs.Register();
}

/** With the top window as parent a box would open behind a modal dialog. */
wxWindow* CWxUserPrompt::Parent() const {
    wxWindow* last = m_modalDialogs.Last();
    return last ? last : wxTheApp->GetTopWindow();
}

int CWxUserPrompt::Show(const std::wstring& text, long style) const {
    return wxMessageBox(file_util_ex::ShownText(text), wxTheApp->GetAppName(), style, Parent());
}

void CWxUserPrompt::ShowMessage(const std::wstring& text) {
    Show(text, wxOK | wxCENTRE);
}

bool CWxUserPrompt::AskYesNo(const std::wstring& text) {
    return Show(text, wxYES_NO | wxNO_DEFAULT | wxCENTRE | wxICON_QUESTION) == wxYES;
}

ESaveAnswer CWxUserPrompt::AskSave(const std::wstring& text) {
    wxMessageDialog box(Parent(), file_util_ex::ShownText(text), wxTheApp->GetAppName(),
                        wxYES_NO | wxCANCEL | wxCENTRE | wxICON_QUESTION);
    box.SetYesNoCancelLabels(wxString(lng::Text("Save")), wxString(lng::Text("Discard")),
                             wxString(lng::Text("Cancel")));
    switch (box.ShowModal()) {
        case wxID_YES:
            return ESaveAnswer::Save;
        case wxID_NO:
            return ESaveAnswer::Discard;
        default:
            return ESaveAnswer::Cancel;
    }
}

void CWxUserPrompt::BeginBusy() {
    wxBeginBusyCursor();
}

void CWxUserPrompt::EndBusy() {
    wxEndBusyCursor();
}
