// SPDX-License-Identifier: MIT
#pragma once

#include <wx/panel.h>

class CUpload;
class wxGauge;
class wxStaticText;

/** Shows how far an upload is. */
class CProgressPage final : public wxPanel {
  public:
    explicit CProgressPage(wxWindow* parent);
    void ShowUpload(const CUpload& upload);

  private:
    wxStaticText* m_heading;
    wxGauge* m_bar;
    wxStaticText* m_text;
};
