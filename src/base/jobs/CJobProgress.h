// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <atomic>

/** The progress of a job and the request to cancel it. The working thread sets share and phase and asks
 * IsCancelled; any other thread reads share and phase and may cancel. */
class CJobProgress {
  public:
    /** How much of the whole work is done, clamped to 0..1. */
    void SetShare(double share) { m_share = std::clamp(share, 0.0, 1.0); }
    [[nodiscard]] double Share() const { return m_share; }
    /** What is being done now: a literal marked by lng::Mark, which is translated where it is shown. */
    void SetPhase(const char* englishText) { m_phase = englishText; }
    [[nodiscard]] const char* Phase() const { return m_phase; }

    /** Asks the work to end as soon as it can, without a result. */
    void Cancel() { m_cancelled = true; }
    [[nodiscard]] bool IsCancelled() const { return m_cancelled; }
    /** IsCancelled for code that knows nothing of jobs. */
    [[nodiscard]] const std::atomic<bool>& CancelFlag() const { return m_cancelled; }

  private:
    std::atomic<double> m_share{0};
    std::atomic<const char*> m_phase{""};
    std::atomic<bool> m_cancelled{false};
};
