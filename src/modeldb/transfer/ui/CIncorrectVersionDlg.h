// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>

/** Tells that the server of models does not take this version of the program, with a link to the newest one. */
class CIncorrectVersionDlg : public wxDialog {
  public:
    explicit CIncorrectVersionDlg(wxWindow* parent);
    ~CIncorrectVersionDlg() override = default;
};
