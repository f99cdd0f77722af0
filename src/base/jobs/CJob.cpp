// SPDX-License-Identifier: MIT
#include "base/jobs/CJob.h"

#include <system_error>

CJob::CJob(CWork work) {
    const auto run = [this, work = std::move(work)] { work(m_progress); };
    try {
        m_end = std::async(std::launch::async, run);
    } catch (const std::system_error&) {
        std::packaged_task<void()> task(run);
        task();
        m_end = task.get_future();
    }
}

CJob::~CJob() {
    m_progress.Cancel();
    if (m_end.valid()) m_end.wait();
}

bool CJob::HasEndedWithin(std::chrono::milliseconds time) const {
    return !m_end.valid() || m_end.wait_for(time) == std::future_status::ready;
}
