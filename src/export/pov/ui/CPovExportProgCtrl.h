// SPDX-License-Identifier: MIT
#pragma once

#include <wx/gauge.h>

#include <chrono>

/** The progress bar of the POV-Ray export. The export returns to the event loop only when it has ended, so
 * the bar itself dispatches events: windows repaint, and input is handled at once. */
class CPovExportProgCtrl final : public wxGauge {
  public:
    explicit CPovExportProgCtrl(wxWindow* parent);

    /** Resets the bar to 0. total: number of steps, at least 1. */
    void Begin(unsigned total);
    void Step();
    /** Shows the bar full. */
    void Complete();
    /** Dispatches events until none are left and the bar is drawn with its current value, but no longer
     * than limit. */
    void ShowNow(std::chrono::milliseconds limit);

  private:
    using CClock = std::chrono::steady_clock;

    unsigned m_position = 0;
    unsigned m_total = 0;
    bool m_isDrawn = false;  ///< since the last change
    CClock::time_point m_nextShow;
};
