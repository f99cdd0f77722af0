// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "modeldb/server/http/CHttpAnswer.h"

/** How an HTTP server listens, and what it bears. */
struct CHttpServerOptions {
    using Seconds = std::chrono::duration<double>;

    /** Numeric IPv4 and IPv6 addresses; all get one port. One that the machine does not have (no IPv6) is left out as long as
     * another is there. "::" means IPv6 alone, so that "0.0.0.0" may stand beside it. */
    std::vector<std::string> addresses = {"127.0.0.1", "::1"};
    int port = 0;     ///< 0: one that the system chooses, see CHttpServer::Port
    int threads = 2;  ///< that read, write and call the site; 1..64

    /** Numeric addresses of proxies whose last entry of X-Forwarded-For is the client's address. Of all others that field
     * is only a header. */
    std::vector<std::string> trustedProxies;

    std::size_t headBytes = 8192;        ///< request line and header, at most; more: 431. 1024..65536
    std::uint64_t bodyBytes = 64 << 20;  ///< a body, at most; more: 413 before any of it is read
    std::uint64_t spoolBytes = 1 << 30;  ///< of all bodies together; no room: 503
    std::string spoolFolder;  ///< where bodies lie while they are read; empty: the folder for temporary files
    std::size_t connections = 4096;      ///< at once; further ones are told 503 and closed
    std::size_t waitingRequests = 1024;  ///< given to the site and not answered; further ones are told 503

    /** What one peer may have: connections at once, requests a second, and how many it may save up. 0: no limit. An IPv6 peer is
     * its /64 network. Connections of trusted proxies are not limited, the requests of those behind them are. */
    std::size_t peerConnections = 256;
    double peerRequestsPerSecond = 200;
    double peerBurst = 2000;
    bool limitLoopback = false;  ///< whether that holds for loopback addresses, too

    /** From the first byte of a head to its last, and from the connection's start to its first byte. */
    Seconds headTime{10};
    /** Between two requests. Longer than proxies keep a connection (60), or their next request would meet its end. */
    Seconds idleTime{75};
    Seconds stallTime{30};  ///< without a byte, while a body is read or an answer is sent
    Seconds bodyGrace{10};  ///< a body may take this and its length / bodyBytesPerSecond
    double bodyBytesPerSecond = 32 << 10;
    Seconds answerGrace{30};  ///< sending an answer may take this and its length / answerBytesPerSecond
    double answerBytesPerSecond = 8 << 10;
    Seconds siteTime{300};  ///< from the site's call to its Send; then the client is told 503

    int retryAfterSeconds = 2;  ///< Retry-After of all refusals that pass
    std::string serverName = "Orbivue";

    /** Makes the answer of a refusal of the server's own: status and one line of English. Called on any of its threads; a
     * Retry-After where it is due is added to what it gives. Without it the line is the text. */
    std::function<CHttpAnswer(int status, std::string_view why)> refusal;
    /** Takes one line of JSON, without its end, for each request: time, id, peer, method, target (escaped and
     * shortened), status, bytes, milliseconds. Never a header's value. Called on any thread of the server; must not block. */
    std::function<void(std::string_view line)> log;
};
