// SPDX-License-Identifier: MIT
#pragma once

#include <wx/aui/auibar.h>

#include <functional>

#include "frame/slideshow/CSlideShowHost.h"

class wxSpinCtrlDouble;

/** The toolbar of the slideshow: the button that starts and stops it, how long a model is shown, and the button of the
 * full-screen show. */
class CSlideShowBar final : public wxAuiToolBar {
  public:
    /** The shortest and longest time that can be chosen, in milliseconds. */
    static constexpr int kShortestMs = 500, kLongestMs = 3'600'000;

    struct CActions {
        std::function<void()> toggle;
        std::function<void(int periodMs)> setInterval;
        std::function<void()> showFullScreen;
        std::function<void()> leave;  ///< the keyboard goes back to the view
    };
    CSlideShowBar(wxWindow* parent, CActions actions);

    void ShowButton(EShowButton button);
    /** The nearest time that can be chosen. */
    void ShowInterval(int periodMs);

  private:
    void MakeField();
    void TakeInterval();

    CActions m_actions;
    int m_start = 0, m_fullScreen = 0;  ///< the tools' identifiers
    wxSpinCtrlDouble* m_seconds = nullptr;
};
