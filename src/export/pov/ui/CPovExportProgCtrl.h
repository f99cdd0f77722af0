// SPDX-License-Identifier: MIT
#pragma once

#include <wx/gauge.h>

#include <chrono>

/** The progress bar of the POV-Ray export. The export comes back to the event loop only when it has ended, so
 * the bar itself has its window painted, and has what the user does meanwhile heard at once. */
class CPovExportProgCtrl final : public wxGauge {
  public:
    explicit CPovExportProgCtrl(wxWindow* parent);

    /** Starts again at 0. total: at least 1. */
    void Begin(unsigned total);
    void Step();
    /** Shows the bar full. */
    void Complete();
    /** Serves events until there are none and the bar is on the screen as it is now; at most that long. */
    void ShowNow(std::chrono::milliseconds limit);

  private:
    using CClock = std::chrono::steady_clock;

    unsigned m_position = 0;
    unsigned m_total = 0;
    bool m_isDrawn = false;  ///< since the last change
    CClock::time_point m_nextShow;
};
