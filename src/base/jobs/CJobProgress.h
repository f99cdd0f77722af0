// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <atomic>

/** How far a piece of work has come, and the wish that it end early. The thread that works writes the first
 * and asks for the second; others do it the other way round. */
class CJobProgress {
  public:
    /** 0 to 1, of the whole work. */
    void SetShare(double share) { m_share = std::clamp(share, 0.0, 1.0); }
    [[nodiscard]] double Share() const { return m_share; }
    /** What is being done now: a literal marked by lng::Mark, which is translated where it is shown. */
    void SetPhase(const char* englishText) { m_phase = englishText; }
    [[nodiscard]] const char* Phase() const { return m_phase; }

    /** The work ends as soon as it can, and leaves nothing behind. */
    void Cancel() { m_cancelled = true; }
    [[nodiscard]] bool IsCancelled() const { return m_cancelled; }
    /** The same for code that knows nothing of jobs. */
    [[nodiscard]] const std::atomic<bool>& CancelFlag() const { return m_cancelled; }

  private:
    std::atomic<double> m_share{0};
    std::atomic<const char*> m_phase{""};
    std::atomic<bool> m_cancelled{false};
};
