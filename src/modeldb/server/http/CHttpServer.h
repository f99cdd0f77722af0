// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>

#include "base/CResult.h"
#include "modeldb/server/http/CHttpCounters.h"
#include "modeldb/server/http/CHttpServerOptions.h"
#include "modeldb/server/http/CHttpSite.h"

/** An HTTP/1.1 server. It trusts nobody: heads that two readers could read differently are refused with 400 and the connection
 * is closed; whoever is slow, large or many is refused or cut without keeping others waiting. SIGPIPE is ignored in the
 * whole process from the first Start. Requests of one connection are answered one after the other, in their order. */
class CHttpServer {
  public:
    using COptions = CHttpServerOptions;

    /** Listens and answers until Stop. The site must live until Stop has returned. Exists: the port is taken; BadArgument: an
     * option makes no sense; Unreadable: refused by the system. Nothing is left open after a failure. */
    [[nodiscard]] static CResult<std::unique_ptr<CHttpServer>> Start(COptions options, CHttpSite& site);
    /** Stop({}). */
    ~CHttpServer();
    CHttpServer(const CHttpServer&) = delete;
    CHttpServer& operator=(const CHttpServer&) = delete;

    /** Where it listens; 1..65535. */
    [[nodiscard]] int Port() const;
    /** Takes no further connections, closes idle ones, lets running requests end with "Connection: close", up to grace; what
     * is not done then is cut. Blocks until all threads have ended. Replies that are still held may be
     * sent or dropped later, to no effect. Call it on any thread but the server's own; a second call waits for the first. */
    void Stop(std::chrono::duration<double> grace);
    /** Any thread, any time, also after Stop. */
    [[nodiscard]] CHttpCounters Counters() const;

  private:
    struct CState;
    explicit CHttpServer(std::unique_ptr<CState> state);
    std::unique_ptr<CState> m_state;
};
