// SPDX-License-Identifier: MIT
#pragma once

#include <wx/gauge.h>
#include <wx/timer.h>

#include <cstdint>

#include "modeldb/client/CBlobProgress.h"

/** The gauge of a transfer: counts its units. Thread of the windows only. */
class CProgCtrl final : public wxGauge, public CBlobProgress {
  public:
    explicit CProgCtrl(wxWindow* parent);

    /** Starts again at 0. Of total the low 32 bits count; 0 changes nothing. */
    void OnProgressStart(std::int64_t total) override;
    void OnProgressStep() override;
    bool DoContinue() override { return true; }

    /** How much is done, 0 to 100. */
    [[nodiscard]] double Percent() const;
    /** Shows a value and does not swing, which it does otherwise while its timer runs. */
    void SetDeterminate();

  private:
    void OnTimer();

    std::int32_t m_steps = 0;
    bool m_isDeterminate = true;
    wxTimer m_timer;
};
