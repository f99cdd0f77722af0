// SPDX-License-Identifier: MIT
#include "export/webgl/ui/CHtmlSettingsDlg.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/statline.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "export/webgl/CHtmlSettings.h"
#include "widgets/ui/button_label.h"
#include "widgets/ui/field_label.h"

namespace {

struct CFlag {
    const char* text;
    bool (CHtmlSettings::*get)() const;
    void (CHtmlSettings::*set)(bool);
};

constexpr std::array<CFlag, CHtmlSettingsDlg::kFlags> kFlagTable{{
    {lng::Mark("Minify files"), &CHtmlSettings::GetMinify, &CHtmlSettings::SetMinify},
    {lng::Mark("Combine to the one file"), &CHtmlSettings::GetCombine, &CHtmlSettings::SetCombine},
    {lng::Mark("Launch browser after export"), &CHtmlSettings::GetLaunchBrowser,
     &CHtmlSettings::SetLaunchBrowser},
    {lng::Mark("Enable server side gzip compression"), &CHtmlSettings::GetGzip, &CHtmlSettings::SetGzip},
    {lng::Mark("Generate Download Link"), &CHtmlSettings::GetDownloadLink, &CHtmlSettings::SetDownloadLink},
    {lng::Mark("Generate Cameras Toolbar"), &CHtmlSettings::GetCamerasBar, &CHtmlSettings::SetCamerasBar},
    {lng::Mark("Use double sided material in all cases"), &CHtmlSettings::GetDoubleSided,
     &CHtmlSettings::SetDoubleSided},
}};

wxSizerFlags Item(const wxWindow& window) {
    return wxSizerFlags().Expand().Border(wxALL, window.FromDIP(5));
}

}  // namespace

CHtmlSettingsDlg::CHtmlSettingsDlg(wxWindow* parent, CHtmlSettings& settings)
    : wxDialog(parent, wxID_ANY, lng::Text("HTML5 output settings")), m_settings(settings) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(MakeFlags(), Item(*this));
    column->Add(MakeScriptField(), wxSizerFlags(1).Expand());
    column->Add(new wxStaticLine(this), Item(*this));
    column->Add(MakeButtons(), wxSizerFlags().Expand());
    auto* margin = new wxBoxSizer(wxVERTICAL);
    margin->Add(column, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(5)));
    SetSizerAndFit(margin);
    CentreOnParent();
}

wxStaticBoxSizer* CHtmlSettingsDlg::MakeFlags() {
    auto* box = new wxStaticBoxSizer(wxVERTICAL, this, lng::Text("Settings"));
    for (std::size_t i = 0; i < kFlags; ++i) {
        m_flags[i] = new wxCheckBox(box->GetStaticBox(), wxID_ANY, lng::Text(kFlagTable[i].text));
        box->Add(m_flags[i], Item(*this));
    }
    return box;
}

wxSizer* CHtmlSettingsDlg::MakeScriptField() {
    constexpr int kShownLines = 6, kShownColumns = 56;
    auto* label = new wxStaticText(this, wxID_ANY, lng::Text("Additional JavaScript code"));
    m_javaScript =
        new wxTextCtrl(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize, wxTE_MULTILINE);
    wxFont font = m_javaScript->GetFont();
    font.SetFamily(wxFONTFAMILY_TELETYPE);
    m_javaScript->SetFont(font);
    m_javaScript->SetInitialSize(
        {m_javaScript->GetCharWidth() * kShownColumns, m_javaScript->GetCharHeight() * kShownLines});
    SetLabelFor(*label, *m_javaScript);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(label, Item(*this));
    column->Add(m_javaScript, Item(*this).Proportion(1));
    return column;
}

wxSizer* CHtmlSettingsDlg::MakeButtons() {
    auto* ok = new wxButton(this, wxID_OK, lng::Text("OK"));
    auto* cancel = new wxButton(this, wxID_CANCEL, lng::Text("Cancel"));
    SetButtonLabel(*ok, lng::Text("OK"));
    SetButtonLabel(*cancel, lng::Text("Cancel"));
    cancel->MoveBeforeInTabOrder(ok);  // as they stand
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    const wxSizerFlags item = wxSizerFlags().CenterVertical().Border(wxALL, FromDIP(5));
    buttons->AddStretchSpacer();
    buttons->Add(cancel, item);
    buttons->Add(ok, item);
    ok->SetDefault();
    return buttons;
}

bool CHtmlSettingsDlg::TransferDataToWindow() {
    for (std::size_t i = 0; i < kFlags; ++i) m_flags[i]->SetValue((m_settings.*kFlagTable[i].get)());
    m_javaScript->ChangeValue(lng::ConvertFromUTF8(m_settings.GetJavaScript()));
    return true;
}

bool CHtmlSettingsDlg::TransferDataFromWindow() {
    for (std::size_t i = 0; i < kFlags; ++i) (m_settings.*kFlagTable[i].set)(m_flags[i]->GetValue());
    m_settings.SetJavaScript(file_util_ex::ConvertToUTF8(m_javaScript->GetValue().ToStdWstring()));
    (void)m_settings.Save();  // what cannot be saved holds for this run, as the settings do
    return true;
}
