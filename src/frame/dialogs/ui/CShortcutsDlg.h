// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>

class CShortcutList;
class wxStaticText;
class wxTextCtrl;

/** The window with all keys and movements of the mouse, which can be searched. It is not modal, so that one can try what
 * it tells; Esc closes it. Destroys itself when it is closed. */
class CShortcutsDlg final : public wxDialog {
  public:
    explicit CShortcutsDlg(wxWindow* parent);

  private:
    void Search();
    void BindKeys();
    [[nodiscard]] bool Scroll(int keyCode);

    wxTextCtrl* m_search;
    wxStaticText* m_nothing;
    CShortcutList* m_list;
};
