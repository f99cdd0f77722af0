// SPDX-License-Identifier: MIT
#pragma once

#include <wx/gauge.h>

#include <chrono>

/**
 * The progress bar of the POV-Ray export. The export keeps the thread of the windows, so the bar itself sees
 * to it that windows are repainted, and that what the user does meanwhile is heard and not kept for
 * afterwards.
 */
class CPovExportProgCtrl final : public wxGauge {
  public:
    explicit CPovExportProgCtrl(wxWindow* parent);

    /** Starts again at 0. total: at least 1. */
    void Begin(unsigned total);
    void Step();
    /** Shows the bar full. */
    void Complete();

  private:
    using CClock = std::chrono::steady_clock;
    void ShowNow();

    unsigned m_position = 0;
    unsigned m_total = 0;
    CClock::time_point m_nextShow;
};
