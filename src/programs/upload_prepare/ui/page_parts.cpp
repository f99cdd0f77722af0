// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/ui/page_parts.h"

#include <wx/gdicmn.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "widgets/ui/accessible_name.h"
#include "widgets/ui/field_label.h"

namespace page_parts {

int TextWidth(const wxWindow& window) {
    constexpr int kWidth = 520, kChars = 64;  // which large letters need
    const int most = wxGetClientDisplayRect().width * 8 / 10;
    return std::min(std::max(window.FromDIP(kWidth), kChars * window.GetCharWidth()), most);
}

wxStaticText* AddText(wxWindow* page, wxSizer& column, const std::wstring& text) {
    auto* label = new wxStaticText(page, wxID_ANY, wxEmptyString);
    ShowText(*label, text);
    column.Add(label, wxSizerFlags().Border(wxBOTTOM, page->FromDIP(8)));
    return label;
}

wxStaticText* AddHeading(wxWindow* page, wxSizer& column, const std::wstring& text) {
    constexpr float kLarger = 1.3F;
    auto* label = new wxStaticText(page, wxID_ANY, wxEmptyString);
    label->SetFont(label->GetFont().Bold().Scaled(kLarger));
    ShowText(*label, text);
    column.Add(label, wxSizerFlags().Border(wxBOTTOM, page->FromDIP(8)));
    return label;
}

void ShowText(wxStaticText& text, const std::wstring& value) {
    text.SetLabelText(value);
    WrapText(text, TextWidth(*text.GetParent()));  // not of the label, whose letters may be wider
    text.Show(!value.empty());
}

wxTextCtrl* MakeReadOnly(wxWindow* page, const std::wstring& name, long style) {
    auto* field = new wxTextCtrl(page, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                                 style | wxTE_READONLY);
    SetAccessibleName(*field, name);
    return field;
}

std::wstring Shown(const std::string& text) {
    return lng::ConvertFromUTF8(utf8_text::Printable(text, '_'));
}

}  // namespace page_parts
