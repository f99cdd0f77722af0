// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** The main window as the session sees it. */
class CSessionFrame {
  public:
    virtual ~CSessionFrame() = default;
    virtual void ShowTitle(const std::wstring& title) = 0;
    /** Shows a message in the status bar. */
    virtual void ShowMessage(const std::wstring& text) = 0;
    /** Shows a message box and returns when the user has closed it. */
    virtual void Tell(const std::wstring& text) = 0;
    /** The edits of the shown scene are not saved, and something is about to drop them. Must ask the user what to
     * do with them, and save them if that is wanted. True: go on; false: the scene is to stay. */
    [[nodiscard]] virtual bool MayLoseEdits() { return true; }
    /** The wait cursor is shown from BeginBusy to EndBusy. */
    virtual void BeginBusy() = 0;
    virtual void EndBusy() = 0;
    /** A script may ask for full screen. */
    [[nodiscard]] virtual bool IsFullScreenShown() const = 0;
    virtual void SetFullScreen(bool fullScreen) = 0;
    /** Called when an opening begins; CSessionListener::OnOpened follows when it has ended. */
    virtual void OnOpening() = 0;
    /** Must have the event loop call CSession::RunWaiting soon; not from inside this call. */
    virtual void AskForTurn() = 0;
    /** Closes the window. Called when closing was requested while the session was busy. */
    virtual void CloseNow() = 0;
};
