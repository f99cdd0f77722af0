// SPDX-License-Identifier: MIT
#include "widgets/ui/wxNumValidator.h"

#include <wx/event.h>
#include <wx/textctrl.h>
#include <wx/utils.h>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "widgets/CUserPrompt.h"

namespace {

wxTextCtrl* TextControl(wxWindow* window) {
    return dynamic_cast<wxTextCtrl*>(window);
}

std::string Utf8(const wxString& text) {
    return file_util_ex::ConvertToUTF8(text.ToStdWstring());
}

}  // namespace

wxNumValidator::wxNumValidator(CNumberFormat format) : m_format(format) {
    Bind(wxEVT_CHAR, &wxNumValidator::OnChar, this);
}

wxNumValidator::wxNumValidator(const wxNumValidator& other) : wxNumValidator(other.m_format) {
    Copy(other);
}

bool wxNumValidator::Validate(wxWindow*) {
    wxTextCtrl* field = TextControl(GetWindow());
    if (!field || !field->IsEnabled() || m_format.Parse(Utf8(field->GetValue()))) return true;
    field->SetFocus();
    field->SelectAll();
    CUserPrompt::Instance().ShowMessage(
        field->GetName().ToStdWstring() + L":\n" +
        lng::Text("Please enter a number in the range %s.", lng::ConvertFromUTF8(m_format.RangeText())));
    return false;
}

void wxNumValidator::OnChar(wxKeyEvent& event) {
    wxTextCtrl* field = TextControl(GetWindow());
    const wxChar key = event.GetUnicodeKey();
    const bool isText = key >= WXK_SPACE && key != WXK_DELETE && !event.HasModifiers();
    if (!field || !isText) {
        event.Skip();
        return;
    }
    const wxChar written = key == ',' ? wxChar('.') : key;
    long from = 0, to = 0;
    field->GetSelection(&from, &to);
    wxString text = field->GetValue();
    text.replace(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from), wxString(written));
    if (!m_format.MayBecomeNumber(Utf8(text)))
        wxBell();
    else if (written != key)
        field->WriteText(written);
    else
        event.Skip();
}
