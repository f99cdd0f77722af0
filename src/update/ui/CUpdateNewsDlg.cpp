// SPDX-License-Identifier: MIT
#include "update/ui/CUpdateNewsDlg.h"

#include <wx/button.h>
#include <wx/gdicmn.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "files/std_file_paths.h"
#include "update/CAppcast.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/button_label.h"
#include "widgets/ui/field_label.h"
#include "widgets/ui/run_job.h"

namespace {

constexpr int kWidth = 72;  ///< of texts, in characters
constexpr int kNotesLines = 12;

/** In pixels, whatever the size of text is. */
int WidthOfTexts(const wxWindow& window) {
    const int most = wxGetClientDisplayRect().width * 8 / 10;
    return std::min(kWidth * window.GetCharWidth(), most);
}

wxStaticText* AddText(wxWindow& parent, wxSizer& column, const std::wstring& text) {
    auto* words = new wxStaticText(&parent, wxID_ANY, wxControl::EscapeMnemonics(text));
    WrapText(*words, WidthOfTexts(parent));
    column.Add(words, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxTOP, parent.FromDIP(12)));
    return words;
}

}  // namespace

CUpdateNewsDlg::CUpdateNewsDlg(wxWindow* parent, const std::wstring& sentence, const CAppcastItem& item)
    : wxDialog(parent, wxID_ANY, lng::Text("New version"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    AddText(*this, *column, sentence);
    if (!item.notes.empty()) AddNotes(*column, item.notes);
    AddPage(*column, item.page);
    AddButtons(*column, !item.page.empty());
    SetSizerAndFit(column);
    SetEscapeId(kLater);
    CentreOnParent();
    Bind(wxEVT_BUTTON, [this](wxCommandEvent& event) { EndModal(event.GetId()); });
}

void CUpdateNewsDlg::AddNotes(wxSizer& column, const std::wstring& notes) {
    wxStaticText* label = AddText(*this, column, lng::Text("What is new:"));
    auto* text = new wxTextCtrl(this, wxID_ANY, notes, wxDefaultPosition,
                                wxSize(WidthOfTexts(*this), kNotesLines * GetCharHeight()),
                                wxTE_MULTILINE | wxTE_READONLY);
    SetLabelFor(*label, *text);
    column.Add(text, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT | wxTOP, FromDIP(12)));
}

/** Where the user is about to go, as it is told by a stranger. */
void CUpdateNewsDlg::AddPage(wxSizer& column, const std::string& page) {
    AddText(*this, column,
            page.empty() ? lng::Text("The list of versions names no page for it.")
                         : lng::Text("The update's page:"));
    if (page.empty()) return;
    auto* address =
        new wxStaticText(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxSize(WidthOfTexts(*this), -1),
                         wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE);
    address->SetLabelText(page);
    address->SetToolTip(page);
    column.Add(address, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, FromDIP(12)));
}

void CUpdateNewsDlg::AddButtons(wxSizer& column, bool hasPage) {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const auto add = [&](int id, const std::wstring& label) {
        auto* button = new wxButton(this, id, wxString(label));
        SetButtonLabel(*button, label);
        row->Add(button, wxSizerFlags().Expand().Border(wxALL, FromDIP(6)));
        return button;
    };
    wxButton* later = add(kLater, lng::Text("Remind me later"));
    add(kSkip, lng::Text("Skip this version"));
    wxButton* get = add(kGet, lng::Text("Get the update"));
    get->Enable(hasPage);
    wxButton* usual = hasPage ? get : later;
    usual->SetDefault();
    usual->SetFocus();
    if (row->CalcMin().x > WidthOfTexts(*this)) row->SetOrientation(wxVERTICAL);
    column.Add(row, wxSizerFlags().Right().Border(wxALL, FromDIP(6)));
}

void OpenUpdatePage(const std::string& page) {
    CStatus opened = CDone{};
    RunJob([&](CJobProgress&) { opened = std_file_paths::LaunchBrowser(page); });
    if (!opened) CUserPrompt::Instance().ShowMessage(lng::Text(opened.Error()));
}
