// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>

class wxSizer;

/** Tells the program's version, its maker and its licence. */
class CAboutBox final : public wxDialog {
  public:
    explicit CAboutBox(wxWindow* parent);

  private:
    [[nodiscard]] wxSizer* MakeTexts();
    /** A hyperlink that opens in the desktop's program for it. */
    void AddLink(wxSizer& column, const wxString& label, const wxString& address);
};
