// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>

class wxCheckBox;
struct CSettings;

/** The dialog with the settings of the program as a whole. OK stores them; Cancel changes nothing. */
class CSettingsDlg final : public wxDialog {
  public:
    /** settings must outlive the dialog. */
    CSettingsDlg(wxWindow* parent, CSettings& settings);

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    CSettings& m_settings;
    wxCheckBox* m_autoUpdate = nullptr;
    wxCheckBox* m_closeOnEsc = nullptr;
};
