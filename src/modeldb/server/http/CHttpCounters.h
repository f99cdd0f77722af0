// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

/** What a server has done since its start. Values of one moment, though each counter is read for itself. */
struct CHttpCounters {
    /** Upper bounds of the buckets of secondsCounts, in seconds; the last bucket has none. */
    static constexpr std::array<double, 12> kSecondsBounds = {0.0005, 0.001, 0.0025, 0.005, 0.01, 0.025,
                                                              0.05,   0.1,   0.25,   1,     2.5,  10};

    std::array<std::uint64_t, 6>
        answers{};  ///< by status / 100: [2] is 200..299; those of http's own refusals, too
    std::array<std::uint64_t, kSecondsBounds.size() + 1>
        secondsCounts{};  ///< not cumulative; head read to last byte sent
    double secondsSum = 0;
    std::uint64_t receivedBytes = 0;       ///< heads and bodies
    std::uint64_t sentBytes = 0;           ///< heads and bodies
    std::uint64_t connections = 0;         ///< accepted since the start, refused ones too
    std::uint64_t openConnections = 0;     ///< now
    std::uint64_t waitingRequests = 0;     ///< now: given to the site and not answered
    std::uint64_t spoolBytes = 0;          ///< now: bodies that are being read or that somebody holds
    std::uint64_t refusedConnections = 0;  ///< 503: too many in all
    std::uint64_t refusedPeers = 0;        ///< 429: too many connections or requests of one peer
    std::uint64_t refusedBusy = 0;         ///< 503: too many waiting requests, or no room for a body
    std::uint64_t malformed = 0;           ///< 400, 414, 417, 431, 505: the connection was closed
    std::uint64_t timedOut = 0;            ///< heads, bodies and answers that were too slow
    std::uint64_t faults =
        0;  ///< exceptions of the site, replies that were dropped, answers that cannot be sent
    std::uint64_t acceptPauses = 0;  ///< times that no descriptor or memory was left for a new connection
};
