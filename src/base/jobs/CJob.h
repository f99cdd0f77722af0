// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <future>

#include "base/jobs/CJobProgress.h"

/** Runs a function on a thread of its own, beginning in the constructor. Where the system has no further
 * thread, the constructor runs it to its end. The function stores its results in variables that it refers to,
 * which must outlive the job. */
class CJob {
  public:
    using CWork = std::function<void(CJobProgress&)>;

    explicit CJob(CWork work);
    CJob(const CJob&) = delete;
    CJob& operator=(const CJob&) = delete;
    /** Cancels the work if it is still running, and waits until it has ended. */
    ~CJob();

    [[nodiscard]] CJobProgress& Progress() { return m_progress; }
    /** Waits for the work, at most that long. True when it has ended. */
    [[nodiscard]] bool HasEndedWithin(std::chrono::milliseconds time) const;
    /** Waits until the work has ended, and rethrows what it threw. Call it once. */
    void Finish() { m_end.get(); }

  private:
    CJobProgress m_progress;
    std::future<void> m_end;
};
