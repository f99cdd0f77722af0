// SPDX-License-Identifier: MIT
#pragma once

#include <wx/modalhook.h>

#include <vector>

/** Keeps a list of the open modal dialogs, starting with Register(). Needed because the toolkit's own lists
 * of windows leave out file dialogs. */
class CModalDialogs final : public wxModalDialogHook {
  public:
    /** The one that was opened last; null when there is none. */
    [[nodiscard]] wxDialog* Last() const { return m_open.empty() ? nullptr : m_open.back(); }

  protected:
    int Enter(wxDialog* dialog) override {
        m_open.push_back(dialog);
        return wxID_NONE;  // the dialog opens as usual
    }
    void Exit(wxDialog* dialog) override { std::erase(m_open, dialog); }

  private:
    std::vector<wxDialog*> m_open;
};
