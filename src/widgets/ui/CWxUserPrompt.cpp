// SPDX-License-Identifier: MIT
#include "widgets/ui/CWxUserPrompt.h"

#include <wx/app.h>
#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/msgdlg.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wx/stopwatch.h>
#include <wx/utils.h>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "widgets/ui/button_label.h"
#include "widgets/ui/field_label.h"

namespace {

/** A key that is held down to go through models must not answer the question that comes up: keys that press buttons
 * count only when they have rested. */
class CSaveQuestion final : public wxDialog {
  public:
    CSaveQuestion(wxWindow* parent, const std::wstring& text)
        : wxDialog(parent, wxID_ANY, wxTheApp->GetAppName()) {
        auto* words = new wxStaticText(this, wxID_ANY, wxControl::EscapeMnemonics(text));
        WrapText(*words, FromDIP(420));
        auto* line = new wxBoxSizer(wxHORIZONTAL);
        line->Add(new wxStaticBitmap(this, wxID_ANY,
                                     wxArtProvider::GetBitmapBundle(wxART_QUESTION, wxART_MESSAGE_BOX)),
                  wxSizerFlags().Border(wxRIGHT, FromDIP(12)));
        line->Add(words, wxSizerFlags(1).CenterVertical());
        auto* buttons = new wxBoxSizer(wxHORIZONTAL);
        Add(*buttons, wxID_NO, lng::Text("Discard"));
        buttons->AddStretchSpacer();
        Add(*buttons, wxID_CANCEL, lng::Text("Cancel"));
        Add(*buttons, wxID_YES, lng::Text("Save"))->SetDefault();
        auto* column = new wxBoxSizer(wxVERTICAL);
        column->Add(line, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(14)));
        column->Add(buttons, wxSizerFlags().Expand().Border(wxALL, FromDIP(8)));
        SetSizerAndFit(column);
        SetEscapeId(wxID_CANCEL);
        CentreOnParent();
        FindWindow(wxID_YES)->SetFocus();
        Bind(wxEVT_BUTTON, [this](wxCommandEvent& event) { EndModal(event.GetId()); });
        Bind(wxEVT_CHAR_HOOK, &CSaveQuestion::Key, this);
    }

  private:
    wxButton* Add(wxSizer& row, int id, const std::wstring& label) {
        auto* button = new wxButton(this, id, wxString(label));
        SetButtonLabel(*button, label);
        row.Add(button, wxSizerFlags().Border(wxALL, FromDIP(6)));
        return button;
    }
    void Key(wxKeyEvent& event) {
        constexpr long kRestMs = 700;
        const int key = event.GetKeyCode();
        const bool presses =
            key == WXK_SPACE || key == WXK_BACK || key == WXK_RETURN || key == WXK_NUMPAD_ENTER;
        const bool hasRested = m_sinceKey.Time() >= kRestMs;
        if (presses) m_sinceKey.Start();
        event.Skip(!presses || hasRested);
    }

    wxStopWatch m_sinceKey;
};

}  // namespace

CWxUserPrompt::CWxUserPrompt() {
    m_modalDialogs.Register();
}

/** With the top window as parent a box would open behind a modal dialog. */
wxWindow* CWxUserPrompt::Parent() const {
    wxWindow* last = m_modalDialogs.Last();
    return last ? last : wxTheApp->GetTopWindow();
}

int CWxUserPrompt::Show(const std::wstring& text, long style) const {
    wxMessageDialog box(Parent(), file_util_ex::ShownText(text), wxTheApp->GetAppName(), style);
    // GTK's own word is not what the other windows say, in some languages.
    if ((style & wxOK) != 0) box.SetOKLabel(wxString(lng::Text("OK")));
    return box.ShowModal();
}

void CWxUserPrompt::ShowMessage(const std::wstring& text) {
    Show(text, wxOK | wxCENTRE);
}

void CWxUserPrompt::ShowWarning(const std::wstring& text) {
    Show(text, wxOK | wxCENTRE | wxICON_EXCLAMATION);
}

bool CWxUserPrompt::AskYesNo(const std::wstring& text) {
    return Show(text, wxYES_NO | wxNO_DEFAULT | wxCENTRE | wxICON_QUESTION) == wxID_YES;
}

ESaveAnswer CWxUserPrompt::AskSave(const std::wstring& text) {
    switch (CSaveQuestion(Parent(), file_util_ex::ShownText(text)).ShowModal()) {
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
