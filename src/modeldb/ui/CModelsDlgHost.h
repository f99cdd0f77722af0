// SPDX-License-Identifier: MIT
#pragma once

#include <string>

struct CModelData;

/** The main window as the browser of the library sees it. */
class CModelsDlgHost {
  public:
    /** Opens a model that was downloaded. It stays the caller's, but for the textures, which may be taken. */
    virtual void OpenDownloaded(CModelData& model) = 0;
    /** The browser is shown, or hidden, from now on: its command shows it. */
    virtual void CheckBrowserCommand(bool isShown) = 0;
    /** Tells of something where it does not disturb. */
    virtual void TellOfTransfer(const std::wstring& text) = 0;
    /** The keyboard goes back to the view. */
    virtual void LeaveBrowser() = 0;

  protected:
    ~CModelsDlgHost() = default;
};
