// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "base/CResult.h"
#include "modeldb/client/transfer/CTransferRequest.h"

/** Does HTTP requests one after the other and keeps its connection between them. HTTP/1.1 over TCP or TLS; certificates are
 * always verified, nothing follows a redirect, a server on this machine is asked without a proxy. Of one thread at a time,
 * but for Stop. */
class CTransferLine {
  public:
    explicit CTransferLine(const CTransferTimes& times);
    CTransferLine(const CTransferLine&) = delete;
    CTransferLine& operator=(const CTransferLine&) = delete;
    ~CTransferLine();

    /** The answer, whatever its status. Busy: no server, or one that is silent, or a connection that broke: WasLost is true
     * then. Unreadable: its certificate is not trusted. BadFormat: it speaks no HTTP. TooLarge: over a limit. Cancelled: by
     * the watcher or Stop. `where` of these is empty. */
    [[nodiscard]] CResult<CTransferAnswer> Run(const CTransferRequest& request, CTransferWatcher& watcher);
    [[nodiscard]] bool WasLost() const;
    /** Ends the running request at once, and all later ones. Any thread. */
    void Stop();

  private:
    struct CState;
    std::unique_ptr<CState> m_state;
};
