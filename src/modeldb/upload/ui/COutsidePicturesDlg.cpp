// SPDX-License-Identifier: MIT
#include "modeldb/upload/ui/COutsidePicturesDlg.h"

#include <wx/button.h>
#include <wx/listbox.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "widgets/ui/accessible_name.h"
#include "widgets/ui/button_label.h"
#include "widgets/ui/field_label.h"

COutsidePicturesDlg::COutsidePicturesDlg(wxWindow* parent, const std::vector<std::string>& paths)
    : wxDialog(parent, wxID_ANY, lng::Text("Upload pictures, too?"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER) {
    const int width = GetCharWidth() * 70;
    auto* text = new wxStaticText(
        this, wxID_ANY,
        lng::Text("These pictures come from outside the model's folder and would be uploaded, too:"));
    WrapText(*text, width);
    auto* list = new wxListBox(this, wxID_ANY, wxDefaultPosition, wxSize(width, GetCharHeight() * 8));
    SetAccessibleName(*list, lng::Text("Pictures from outside the model's folder"));
    for (const std::string& path : paths) list->Append(lng::ConvertFromUTF8(utf8_text::Printable(path, '_')));
    auto* upload = new wxButton(this, wxID_OK, lng::Text("Upload"));
    auto* cancel = new wxButton(this, wxID_CANCEL, lng::Text("Cancel"));
    SetButtonLabel(*upload, lng::Text("Upload"));
    SetButtonLabel(*cancel, lng::Text("Cancel"));
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    buttons->AddStretchSpacer();
    buttons->Add(cancel, wxSizerFlags().Border(wxALL, FromDIP(4)));
    buttons->Add(upload, wxSizerFlags().Border(wxALL, FromDIP(4)));
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(text, wxSizerFlags().Expand().Border(wxALL, FromDIP(10)));
    column->Add(list, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT, FromDIP(10)));
    column->Add(buttons, wxSizerFlags().Expand().Border(wxALL, FromDIP(6)));
    SetSizerAndFit(column);
    CentreOnParent();
    cancel->SetDefault();
    cancel->SetFocus();
}
