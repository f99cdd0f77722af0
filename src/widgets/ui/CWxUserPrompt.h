// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "widgets/CUserPrompt.h"
#include "widgets/ui/CModalDialogs.h"

/** Shows the toolkit's message boxes, above the open modal dialog or, without one, above the program's
 * top window. */
class CWxUserPrompt final : public CUserPrompt {
  public:
    CWxUserPrompt();
    void ShowMessage(const std::wstring& text) override;
    void ShowWarning(const std::wstring& text) override;
    [[nodiscard]] bool AskYesNo(const std::wstring& text) override;
    [[nodiscard]] ESaveAnswer AskSave(const std::wstring& text) override;
    void BeginBusy() override;
    void EndBusy() override;

  private:
    [[nodiscard]] wxWindow* Parent() const;
    int Show(const std::wstring& text, long style) const;

    CModalDialogs m_modalDialogs;
};
