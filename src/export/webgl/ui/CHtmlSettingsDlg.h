// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>

#include <array>

class CHtmlSettings;
class wxCheckBox;
class wxSizer;
class wxStaticBoxSizer;
class wxTextCtrl;

/** The dialog with the options of exported web pages. OK stores them in CHtmlSettings and in its file. */
class CHtmlSettingsDlg final : public wxDialog {
  public:
    /** settings must outlive the dialog. */
    CHtmlSettingsDlg(wxWindow* parent, CHtmlSettings& settings);

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

    static constexpr std::size_t kFlags = 7;

  private:
    [[nodiscard]] wxStaticBoxSizer* MakeFlags();
    [[nodiscard]] wxSizer* MakeScriptField();
    [[nodiscard]] wxSizer* MakeButtons();

    CHtmlSettings& m_settings;
    std::array<wxCheckBox*, kFlags> m_flags{};
    wxTextCtrl* m_javaScript = nullptr;
};
