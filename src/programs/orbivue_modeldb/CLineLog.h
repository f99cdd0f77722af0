// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

/** Writes lines to a descriptor from a thread of its own, so that nobody who logs waits for whoever reads. When too much is
 * waiting further lines are dropped, and a line tells how many. Any thread. */
class CLineLog {
  public:
    /** file: stays the caller's, open for as long as this object lives. */
    explicit CLineLog(int file);
    CLineLog(const CLineLog&) = delete;
    CLineLog& operator=(const CLineLog&) = delete;
    /** Writes what waits. */
    ~CLineLog();

    /** line: without its end. */
    void Add(std::string_view line);
    /** A line of JSON with the time and this text; the same text again is told every ten seconds at most. */
    void AddEvent(std::string_view event);

  private:
    void WriteAll();

    const int m_file;
    std::mutex m_mutex;
    std::condition_variable m_news;
    std::string m_waiting;
    std::uint64_t m_dropped = 0;
    std::string m_lastEvent;
    std::chrono::steady_clock::time_point m_lastEventTime{};
    bool m_isEnding = false;
    std::thread m_thread;  // last: it uses all above
};
