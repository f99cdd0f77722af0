// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "modeldb/server/http/CHttpCounters.h"
#include "modeldb/server/http/CHttpServerOptions.h"
#include "modeldb/server/http/CHttpSite.h"
#include "modeldb/server/http/limits/CHttpPeers.h"
#include "modeldb/server/http/limits/CHttpSpool.h"

/** A time of the options as the clock counts. */
[[nodiscard]] inline std::chrono::steady_clock::duration Steady(CHttpServerOptions::Seconds time) {
    return std::chrono::duration_cast<std::chrono::steady_clock::duration>(time);
}

/** CHttpCounters, counted on all threads. */
class CHttpMeters {
  public:
    using CCount = std::atomic<std::uint64_t>;
    CCount receivedBytes{0}, sentBytes{0}, connections{0}, openConnections{0}, waitingRequests{0};
    CCount refusedConnections{0}, refusedPeers{0}, refusedBusy{0}, malformed{0}, timedOut{0}, faults{0},
        acceptPauses{0};

    void CountAnswer(int status, std::chrono::steady_clock::duration time);
    [[nodiscard]] CHttpCounters Read() const;

  private:
    std::array<CCount, 6> m_answers{};
    std::array<CCount, CHttpCounters::kSecondsBounds.size() + 1> m_secondsCounts{};
    CCount m_nanoseconds{0};
};

/** What all threads and connections of one server share. Lives as long as the last reply that somebody holds. */
struct CHttpShared {
    CHttpShared(CHttpServerOptions given, CHttpSite& answers)
        : options(std::move(given)),
          site(answers),
          peers({options.peerConnections, options.peerRequestsPerSecond, options.peerBurst,
                 options.limitLoopback}),
          spool(options.spoolFolder, options.spoolBytes) {}

    const CHttpServerOptions options;
    CHttpSite& site;  ///< not to be called once the server has stopped
    CForwardedPeers proxies;
    CHttpPeers peers;
    CHttpSpool spool;
    CHttpMeters meters;
    std::atomic<std::uint64_t> lastId{0};
    std::atomic<std::uint64_t> refusedOpen{0};  ///< connections that are only told why they are refused
    std::atomic<bool> stopping{false};

    /** To each connection that opens and closes; WaitForNone wakes when none is left or at the end of the time. */
    void ConnectionOpened();
    void ConnectionClosed();
    void WaitForNone(std::chrono::duration<double> most);

  private:
    std::mutex m_lock;
    std::condition_variable m_closed;
};
