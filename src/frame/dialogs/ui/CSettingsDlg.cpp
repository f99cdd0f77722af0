// SPDX-License-Identifier: MIT
#include "frame/dialogs/ui/CSettingsDlg.h"

#include <wx/checkbox.h>
#include <wx/sizer.h>
#include <wx/statbox.h>

#include "base/text/lng.h"
#include "frame/dialogs/ui/dialog_buttons.h"
#include "frame/dialogs/ui/frame_dialogs.h"
#include "settings/CSettings.h"

CSettingsDlg::CSettingsDlg(wxWindow* parent, CSettings& settings)
    : wxDialog(parent, wxID_ANY, lng::Text("Orbivue Settings")), m_settings(settings) {
    const wxSizerFlags item = wxSizerFlags().Expand().Border(wxALL, FromDIP(5));
    auto* box = new wxStaticBoxSizer(wxVERTICAL, this, lng::Text("Settings"));
    const auto add = [&](const char* text) {
        auto* checkBox = new wxCheckBox(box->GetStaticBox(), wxID_ANY, lng::Text(text));
        box->Add(checkBox, item);
        return checkBox;
    };
    m_autoUpdate = add(lng::Mark("Automatically check for new version of Orbivue"));
    m_closeOnEsc = add(lng::Mark("Close application on Esc"));
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(box, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(5)));
    column->Add(MakeDialogButtons(*this, {wxID_OK, wxID_CANCEL}), item);
    SetSizerAndFit(column);
    CentreOnParent();
}

bool CSettingsDlg::TransferDataToWindow() {
    m_autoUpdate->SetValue(m_settings.autoUpdate);
    m_closeOnEsc->SetValue(m_settings.closeOnEsc);
    return true;
}

bool CSettingsDlg::TransferDataFromWindow() {
    m_settings.autoUpdate = m_autoUpdate->GetValue();
    m_settings.closeOnEsc = m_closeOnEsc->GetValue();
    return true;
}

bool EditSettings(wxWindow* parent) {
    return CSettingsDlg(parent, CSettings::Instance()).ShowModal() == wxID_OK;
}
