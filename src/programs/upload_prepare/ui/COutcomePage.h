// SPDX-License-Identifier: MIT
#pragma once

#include <wx/panel.h>

#include <string>

class CUpload;
class wxButton;
class wxSizer;
class wxStaticText;
class wxTextCtrl;

/** Shows what has come of an upload: the link, or why there is none. */
class COutcomePage final : public wxPanel {
  public:
    explicit COutcomePage(wxWindow* parent);
    void ShowUpload(const CUpload& upload);
    /** What was typed as the password of rclone's configuration; forgets it. */
    [[nodiscard]] std::string TakePassword();

  private:
    [[nodiscard]] wxSizer* MakeLink();
    void CopyLink();
    void OpenLink();

    wxStaticText* m_heading;
    wxStaticText* m_text;
    wxTextCtrl* m_link = nullptr;
    wxButton* m_copy = nullptr;
    wxButton* m_open = nullptr;
    wxTextCtrl* m_password;
    wxTextCtrl* m_errors;
    wxStaticText* m_hint;
};
