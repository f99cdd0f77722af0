// SPDX-License-Identifier: MIT
#pragma once

#include <wx/modalhook.h>

#include <vector>

/** Knows which modal dialogs are open, from Register() on: the toolkit's lists of windows leave
 * file dialogs out. */
class CModalDialogs final : public wxModalDialogHook {
  public:
    /** The one that was opened last; null when there is none. */
    [[nodiscard]] wxDialog* Last() const { return m_open.empty() ? nullptr : m_open.back(); }

  protected:
    int Enter(wxDialog* dialog) override {
        m_open.push_back(dialog);
        return wxID_NONE;  // it opens as it would
    }
    void Exit(wxDialog* dialog) override { std::erase(m_open, dialog); }

  private:
    std::vector<wxDialog*> m_open;
};
