// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <future>

#include "base/jobs/CJobProgress.h"

/** A piece of work on a thread of its own, from its making on; where the system gives no thread it is done
 * by the making one. What it yields it leaves in what the function refers to, which outlives the job. */
class CJob {
  public:
    using CWork = std::function<void(CJobProgress&)>;

    explicit CJob(CWork work);
    CJob(const CJob&) = delete;
    CJob& operator=(const CJob&) = delete;
    /** Cancels work that goes on, and waits for its end. */
    ~CJob();

    [[nodiscard]] CJobProgress& Progress() { return m_progress; }
    /** True as soon as the work has ended; false when it goes on after that time. */
    [[nodiscard]] bool HasEndedWithin(std::chrono::milliseconds time) const;
    /** Waits for the end, and throws here what the work threw; once. */
    void Finish() { m_end.get(); }

  private:
    CJobProgress m_progress;
    std::future<void> m_end;
};
