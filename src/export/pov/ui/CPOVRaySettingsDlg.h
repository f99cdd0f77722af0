// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>

#include "export/pov/pov_settings.h"

class wxCheckBox;
class wxRadioButton;
class wxSizer;
class wxStaticBox;
class wxStaticBoxSizer;
class wxTextCtrl;

/** The dialog with the options of the POV-Ray export. OK stores them in the program's settings if all
 * are valid. */
class CPOVRaySettingsDlg final : public wxDialog {
  public:
    static constexpr int kIdOk = 5100;

    explicit CPOVRaySettingsDlg(wxWindow* parent);

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    [[nodiscard]] wxStaticBoxSizer* MakeSettingsBox();
    [[nodiscard]] wxSizer* MakeDiffuseRows(wxStaticBox* box);
    [[nodiscard]] wxStaticBoxSizer* MakeBackgroundBox();
    [[nodiscard]] wxSizer* MakeButtons();
    void ShowFields(const CPovSettings& fields);
    [[nodiscard]] CPovSettings Fields() const;

    wxCheckBox* m_outputTextures = nullptr;
    wxCheckBox* m_useLastName = nullptr;
    wxCheckBox* m_radiosity = nullptr;
    wxTextCtrl* m_diffuse = nullptr;
    wxTextCtrl* m_selfDiffuse = nullptr;
    wxRadioButton* m_modelBackground = nullptr;
    wxRadioButton* m_previewBackground = nullptr;
};
