// SPDX-License-Identifier: MIT
#include "frame/ui/CSceneNotesDlg.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/textctrl.h>

#include "base/text/lng.h"
#include "widgets/ui/accessible_name.h"
#include "widgets/ui/button_label.h"

CSceneNotesDlg::CSceneNotesDlg(wxWindow* parent, const std::vector<std::wstring>& lines)
    : wxDialog(parent, wxID_ANY, lng::Text("Notes about this model"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER) {
    wxString text;
    for (const std::wstring& line : lines) text += wxString(line) + "\n";
    auto* list = new wxTextCtrl(this, wxID_ANY, text, wxDefaultPosition, FromDIP(wxSize(560, 260)),
                                wxTE_MULTILINE | wxTE_READONLY);
    SetAccessibleName(*list, GetTitle().ToStdWstring());
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(list, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(10)));
    column->Add(CreateStdDialogButtonSizer(wxCLOSE),
                wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(10)));
    if (auto* close = wxDynamicCast(FindWindow(wxID_CLOSE), wxButton))
        SetButtonLabel(*close, lng::Text("Close"));
    SetSizerAndFit(column);
    SetEscapeId(wxID_CLOSE);
    SetAffirmativeId(wxID_CLOSE);
    CentreOnParent();
}
