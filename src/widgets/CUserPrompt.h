// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

/** How code without windows speaks to the user: messages, questions and the wait cursor. The window layer
 * installs one at the start; tests install their own and see what would have been asked. Texts are translated
 * already. Thread of the windows only. */
class CUserPrompt {
  public:
    CUserPrompt() = default;
    CUserPrompt(const CUserPrompt&) = delete;
    CUserPrompt& operator=(const CUserPrompt&) = delete;
    virtual ~CUserPrompt() = default;

    /** A message box with the program's name as its caption. */
    virtual void ShowMessage(const std::wstring& text) = 0;
    /** Asks before something is lost, with the buttons Yes and No, of which Enter takes No. True for Yes. */
    [[nodiscard]] virtual bool AskYesNo(const std::wstring& text) = 0;
    virtual void BeginBusy() = 0;
    virtual void EndBusy() = 0;

    /** The one in force, never null: at first one that shows nothing and answers No. */
    [[nodiscard]] static CUserPrompt& Instance();
    /** Puts another in force and gives the one before; null for the first one. */
    static std::unique_ptr<CUserPrompt> Install(std::unique_ptr<CUserPrompt> prompt);
};

/** Shows the wait cursor as long as it lives. */
class CBusyCursor {
  public:
    CBusyCursor() { CUserPrompt::Instance().BeginBusy(); }
    CBusyCursor(const CBusyCursor&) = delete;
    CBusyCursor& operator=(const CBusyCursor&) = delete;
    ~CBusyCursor() { CUserPrompt::Instance().EndBusy(); }
};
