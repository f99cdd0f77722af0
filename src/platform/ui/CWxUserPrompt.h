// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/CUserPrompt.h"

/** Speaks through the toolkit's message boxes, over the modal dialog that is open, else over the program's
 * top window. */
class CWxUserPrompt final : public CUserPrompt {
  public:
    void ShowMessage(const std::wstring& text) override;
    [[nodiscard]] bool AskYesNo(const std::wstring& text) override;
    void BeginBusy() override;
    void EndBusy() override;
};
