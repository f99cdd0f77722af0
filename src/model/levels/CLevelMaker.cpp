// SPDX-License-Identifier: MIT
#include "model/levels/CLevelMaker.h"

#include <exception>
#include <utility>

#include "base/jobs/thread_priority.h"
#include "model/levels/make_levels.h"

CLevelMaker::~CLevelMaker() {
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
        m_stopWork = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable()) m_thread.join();
}

void CLevelMaker::Give(std::size_t number, const CPreparedMesh& mesh) {
    try {
        CTask task{number, mesh, m_round};
        if (!m_thread.joinable()) m_thread = std::thread([this] { Run(); });
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
        ++m_pending;
    } catch (const std::exception&) {
        const std::lock_guard lock(m_mutex);
        m_made.push_back({number, mesh.stamp, {}});
        ++m_pending;
    }
    m_wake.notify_all();
}

std::optional<CLevelMaker::CMade> CLevelMaker::Take() {
    const std::lock_guard lock(m_mutex);
    if (m_made.empty()) return std::nullopt;
    std::optional<CMade> made(std::move(m_made.front()));
    m_made.pop_front();
    --m_pending;
    return made;
}

std::size_t CLevelMaker::Pending() const {
    const std::lock_guard lock(m_mutex);
    return m_pending;
}

std::size_t CLevelMaker::PendingTriangles() const {
    const std::lock_guard lock(m_mutex);
    std::size_t sum = 0;
    for (const CTask& task : m_tasks) sum += task.mesh.IndexCount() / 3;
    return sum;
}

void CLevelMaker::SetPaused(bool paused) {
    {
        const std::lock_guard lock(m_mutex);
        m_paused = paused;
    }
    m_wake.notify_all();
}

void CLevelMaker::Forget() {
    const std::lock_guard lock(m_mutex);
    m_tasks.clear();
    m_made.clear();
    m_pending = 0;
    ++m_round;
    m_stopWork = true;
}

/** Waits for one; none when the maker ends. */
std::optional<CLevelMaker::CTask> CLevelMaker::NextTask() {
    std::unique_lock lock(m_mutex);
    m_wake.wait(lock, [this] { return m_ended || (!m_paused && !m_tasks.empty()); });
    if (m_ended) return std::nullopt;
    std::optional<CTask> task(std::move(m_tasks.front()));
    m_tasks.pop_front();
    m_stopWork = false;
    return task;
}

void CLevelMaker::Run() {
    LowerPriorityOfThisThread();
    while (true) {
        const std::optional<CTask> task = NextTask();
        if (!task) return;
        CMade made{task->number, task->mesh.stamp, {}};
        try {
            made.levels = MakeLevels(task->mesh, m_stopWork);
        } catch (const std::exception&) {
            made.levels = {};
        }
        const std::lock_guard lock(m_mutex);
        if (task->round == m_round) m_made.push_back(std::move(made));
    }
}
