// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

/** What is to become of something that was not saved. */
enum class ESaveAnswer { Save, Discard, Cancel };

/** Messages, questions and the wait cursor for code that has no windows. The window layer installs one at the
 * start; tests install their own, which records the calls. Texts are already translated. Only the thread of
 * the windows may call it. */
class CUserPrompt {
  public:
    CUserPrompt() = default;
    CUserPrompt(const CUserPrompt&) = delete;
    CUserPrompt& operator=(const CUserPrompt&) = delete;
    virtual ~CUserPrompt() = default;

    /** A message box with the program's name as its caption. */
    virtual void ShowMessage(const std::wstring& text) = 0;
    /** The same with an exclamation mark: what was asked for did not happen. */
    virtual void ShowWarning(const std::wstring& text) { ShowMessage(text); }
    /** Asks before something is lost, with the buttons Yes and No; the default is No. True for Yes. */
    [[nodiscard]] virtual bool AskYesNo(const std::wstring& text) = 0;
    /** Asks before something is dropped that was not saved, with the buttons Save, Discard and Cancel. A prompt that
     * has nobody to ask discards it. */
    [[nodiscard]] virtual ESaveAnswer AskSave(const std::wstring& text);
    virtual void BeginBusy() = 0;
    virtual void EndBusy() = 0;

    /** The installed prompt. At first it is one that shows nothing and answers No. */
    [[nodiscard]] static CUserPrompt& Instance();
    /** Installs a prompt (null: the first one) and returns the one before, null if that was the first one. */
    static std::unique_ptr<CUserPrompt> Install(std::unique_ptr<CUserPrompt> prompt);
};

/** Shows the wait cursor during its lifetime. */
class CBusyCursor {
  public:
    CBusyCursor() { CUserPrompt::Instance().BeginBusy(); }
    CBusyCursor(const CBusyCursor&) = delete;
    CBusyCursor& operator=(const CBusyCursor&) = delete;
    ~CBusyCursor() { CUserPrompt::Instance().EndBusy(); }
};
