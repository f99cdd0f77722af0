// SPDX-License-Identifier: MIT
#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "modeldb/server/http/CHttpShared.h"

class CHttpConnection;

/** One thread of a server with the connections that are its own: all that happens to a connection happens on its loop's
 * thread, so that connections need no locks. Time limits of all its connections are looked at together, some times a
 * second, and only while there are connections. */
class CHttpLoop {
  public:
    explicit CHttpLoop(std::shared_ptr<CHttpShared> shared);

    /** Starts the thread. Throws std::system_error where there can be none. */
    void Start();
    /** Closes what is still open, runs what was posted and ends the thread; Post fails from then on. Not on the loop's thread. */
    void End();
    /** Runs work on the loop's thread, soon. False, and work is dropped, after End. Any thread. */
    bool Post(std::function<void()> work);
    [[nodiscard]] bool IsThisThread() const;

    [[nodiscard]] boost::asio::io_context& Context() { return m_context; }
    [[nodiscard]] CHttpShared& Shared() { return *m_shared; }

    // The rest is for the loop's thread alone.

    /** Takes a connection that was just made; null ones are ignored. */
    void Add(std::shared_ptr<CHttpConnection> connection);
    void Remove(const CHttpConnection& connection);
    /** Lets idle connections end; the others follow when they have answered. */
    void CloseIdle();
    /** Room for what is read and handled before the handler returns. */
    [[nodiscard]] std::span<char> Scratch() { return m_scratch; }
    /** An empty text, for the same time. */
    [[nodiscard]] std::string& EmptyText();
    /** The current field Date. */
    [[nodiscard]] std::string_view Date();

  private:
    void Run();
    void AwaitTick();
    void Tick();
    void CloseAll();

    static constexpr std::chrono::milliseconds kTick{200};

    std::shared_ptr<CHttpShared> m_shared;  // shared with the server, the other loops and what they serve
    boost::asio::io_context m_context{1};
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> m_work{m_context.get_executor()};
    boost::asio::steady_timer m_timer{m_context};
    std::vector<std::shared_ptr<CHttpConnection>>
        m_connections;  // shared with handlers under way and with replies
    std::vector<char> m_scratch;
    std::string m_text, m_date;
    std::int64_t m_dateSeconds = -1;
    bool m_ticking = false;
    std::mutex m_postLock;
    bool m_ended = false;
    std::thread m_thread;
};
