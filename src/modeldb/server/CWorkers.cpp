// SPDX-License-Identifier: MIT
#include "modeldb/server/CWorkers.h"

#include <exception>

CWorkers::CWorkers(std::size_t threads, std::size_t mostWaiting) : m_mostWaiting(mostWaiting) {
    for (std::size_t i = 0; i < threads; ++i) m_threads.emplace_back([this] { WorkOn(); });
}

bool CWorkers::Post(CWork work) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_isStopped || m_queue.size() >= m_mostWaiting) return false;
        m_queue.push_back(std::move(work));
    }
    m_news.notify_one();
    return true;
}

void CWorkers::Stop() {
    std::deque<CWork> dropped;
    {
        const std::lock_guard lock(m_mutex);
        m_isStopped = true;
        dropped.swap(m_queue);
    }
    m_news.notify_all();
    for (std::thread& thread : m_threads)
        if (thread.joinable()) thread.join();
}

std::size_t CWorkers::Waiting() const {
    const std::lock_guard lock(m_mutex);
    return m_queue.size();
}

void CWorkers::WorkOn() {
    for (std::unique_lock lock(m_mutex);;) {
        m_news.wait(lock, [this] { return m_isStopped || !m_queue.empty(); });
        if (m_isStopped) return;
        {
            CWork work = std::move(m_queue.front());
            m_queue.pop_front();
            lock.unlock();
            try {
                work();
            } catch (const std::exception&) {
                // Whoever waits for it is told by the reply that goes with the work.
            }
        }
        lock.lock();
    }
}
