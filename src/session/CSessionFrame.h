// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** The main window as the session sees it. */
class CSessionFrame {
  public:
    virtual ~CSessionFrame() = default;
    virtual void ShowTitle(const std::wstring& title) = 0;
    /** Something that happened, in passing. */
    virtual void ShowMessage(const std::wstring& text) = 0;
    /** A message that waits until it has been read. */
    virtual void Tell(const std::wstring& text) = 0;
    /** Shows that the user has to wait, from one to the other. */
    virtual void BeginBusy() = 0;
    virtual void EndBusy() = 0;
    /** A model is being opened from now on; CSessionListener::OnOpened follows. */
    virtual void OnOpening() = 0;
    /** Is to call CSession::RunWaiting soon, from the event loop. */
    virtual void AskForTurn() = 0;
    /** Closes the window, which was asked for while something held the turn. */
    virtual void CloseNow() = 0;
};
