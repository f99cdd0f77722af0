// SPDX-License-Identifier: MIT
#include "export/pov/ui/CPOVRaySettingsDlg.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/radiobut.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/statline.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "settings/CSettings.h"
#include "widgets/ui/button_label.h"
#include "widgets/ui/field_label.h"
#include "widgets/ui/wxNumValidator.h"

namespace {

wxSizerFlags Item(const wxWindow& window) {
    return wxSizerFlags().CenterVertical().Border(wxALL, window.FromDIP(5));
}

wxSizerFlags Line(const wxWindow& window) {
    return wxSizerFlags().Border(wxALL, window.FromDIP(5));
}

wxCheckBox* AddCheckBox(wxStaticBoxSizer& box, const wxString& text) {
    auto* checkBox = new wxCheckBox(box.GetStaticBox(), wxID_ANY, text);
    box.Add(checkBox, Line(*checkBox));
    return checkBox;
}

wxTextCtrl* MakeNumberField(wxWindow* parent) {
    auto* field = new wxTextCtrl(parent, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize, 0,
                                 wxNumValidator(pov_settings::DiffuseFormat()));
    constexpr int kShownDigits = 8;
    field->SetInitialSize(field->GetSizeFromTextSize(field->GetCharWidth() * kShownDigits));
    return field;
}

/** One row of the grid: the label, its field, and what the field's values mean. */
void AddNumberRow(wxSizer& grid, wxTextCtrl* field, const wxString& text, const wxString& note) {
    auto* label = new wxStaticText(field->GetParent(), wxID_ANY, text);
    SetLabelFor(*label, *field);
    grid.Add(label, Item(*field));
    grid.Add(field, Item(*field));
    grid.Add(new wxStaticText(field->GetParent(), wxID_ANY, "<1] " + note), Item(*field));
    grid.AddSpacer(0);
}

std::string Utf8(const wxTextCtrl& field) {
    return file_util_ex::ConvertToUTF8(field.GetValue().ToStdWstring());
}

}  // namespace

CPOVRaySettingsDlg::CPOVRaySettingsDlg(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, lng::Text("POV-Ray output settings")) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    const wxSizerFlags box = wxSizerFlags().Expand().Border(wxALL, FromDIP(5));
    column->Add(MakeSettingsBox(), box);
    column->Add(MakeBackgroundBox(), box);
    auto* restore = new wxButton(this, wxID_ANY, lng::Text("Restore Defaults"));
    restore->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { ShowFields(pov_settings::ToFields(CSettings())); });
    column->Add(restore, Line(*this));
    column->Add(new wxStaticLine(this), box);
    column->Add(MakeButtons(), wxSizerFlags().Expand());
    auto* margin = new wxBoxSizer(wxVERTICAL);
    margin->Add(column, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(5)));
    SetSizerAndFit(margin);
    CentreOnParent();
}

wxStaticBoxSizer* CPOVRaySettingsDlg::MakeSettingsBox() {
    auto* box = new wxStaticBoxSizer(wxVERTICAL, this, lng::Text("Settings"));
    m_outputTextures = AddCheckBox(*box, lng::Text("Output Textures"));
    m_useLastName = AddCheckBox(*box, lng::Text("Use last pov file name"));
    m_radiosity = AddCheckBox(*box, lng::Text("Enable radiosity"));
    box->Add(MakeDiffuseRows(box->GetStaticBox()), wxSizerFlags().Expand());
    return box;
}

wxSizer* CPOVRaySettingsDlg::MakeDiffuseRows(wxStaticBox* box) {
    auto* grid = new wxFlexGridSizer(2, 4, 0, 0);
    m_diffuse = MakeNumberField(box);
    m_selfDiffuse = MakeNumberField(box);
    AddNumberRow(*grid, m_diffuse, lng::Text("Diffuse value:"), lng::Text("(Default value 0.6)"));
    AddNumberRow(*grid, m_selfDiffuse, lng::Text("Self illumination diffuse value:"),
                 lng::Text("(Default value 0.1)"));
    return grid;
}

wxStaticBoxSizer* CPOVRaySettingsDlg::MakeBackgroundBox() {
    auto* box = new wxStaticBoxSizer(wxVERTICAL, this, lng::Text("Background"));
    m_modelBackground = new wxRadioButton(box->GetStaticBox(), wxID_ANY, lng::Text("Use model backgroud"),
                                          wxDefaultPosition, wxDefaultSize, wxRB_GROUP);
    m_previewBackground =
        new wxRadioButton(box->GetStaticBox(), wxID_ANY, lng::Text("Use preview backgroud"));
    box->Add(m_modelBackground, Line(*this));
    box->Add(m_previewBackground, Line(*this));
    return box;
}

wxSizer* CPOVRaySettingsDlg::MakeButtons() {
    auto* ok = new wxButton(this, kIdOk, lng::Text("OK"));
    SetButtonLabel(*ok, lng::Text("OK"));
    auto* cancel = new wxButton(this, wxID_CANCEL, lng::Text("Cancel"));
    SetButtonLabel(*cancel, lng::Text("Cancel"));
    cancel->MoveBeforeInTabOrder(ok);  // as they stand
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    buttons->AddStretchSpacer();
    buttons->Add(cancel, Item(*this));
    buttons->Add(ok, Item(*this));
    ok->SetDefault();
    SetAffirmativeId(kIdOk);
    return buttons;
}

void CPOVRaySettingsDlg::ShowFields(const CPovSettings& fields) {
    m_outputTextures->SetValue(fields.outputTextures);
    m_useLastName->SetValue(fields.useLastName);
    m_radiosity->SetValue(fields.radiosity);
    m_modelBackground->SetValue(!fields.previewBackground);
    m_previewBackground->SetValue(fields.previewBackground);
    m_diffuse->ChangeValue(fields.diffuse);
    m_selfDiffuse->ChangeValue(fields.selfDiffuse);
}

CPovSettings CPOVRaySettingsDlg::Fields() const {
    return {.outputTextures = m_outputTextures->GetValue(),
            .useLastName = m_useLastName->GetValue(),
            .radiosity = m_radiosity->GetValue(),
            .previewBackground = m_previewBackground->GetValue(),
            .diffuse = Utf8(*m_diffuse),
            .selfDiffuse = Utf8(*m_selfDiffuse)};
}

bool CPOVRaySettingsDlg::TransferDataToWindow() {
    ShowFields(pov_settings::ToFields(CSettings::Instance()));
    return true;
}

bool CPOVRaySettingsDlg::TransferDataFromWindow() {
    return pov_settings::FromFields(Fields(), CSettings::Instance()).HasValue();
}
