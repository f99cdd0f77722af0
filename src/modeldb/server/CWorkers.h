// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

/** Threads that do pieces of work, one after the other, in the order in which they came. Any thread. */
class CWorkers {
  public:
    using CWork = std::function<void()>;

    CWorkers(std::size_t threads, std::size_t mostWaiting);
    CWorkers(const CWorkers&) = delete;
    CWorkers& operator=(const CWorkers&) = delete;
    ~CWorkers() { Stop(); }

    /** False, and nothing is done, where too much waits already or after Stop. An exception of the work ends the work alone. */
    [[nodiscard]] bool Post(CWork work);
    /** Drops what waits, and returns when what runs has ended. */
    void Stop();
    [[nodiscard]] std::size_t Waiting() const;
    [[nodiscard]] bool IsFull() const { return Waiting() >= m_mostWaiting; }

  private:
    void WorkOn();

    const std::size_t m_mostWaiting;
    mutable std::mutex m_mutex;
    std::condition_variable m_news;
    std::deque<CWork> m_queue;
    bool m_isStopped = false;
    std::vector<std::thread> m_threads;
};
