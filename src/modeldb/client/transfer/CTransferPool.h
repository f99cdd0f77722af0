// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "modeldb/client/transfer/CTransferLine.h"

/** Lines for requests of several threads at once: a request takes one that rests, else a new one. */
class CTransferPool {
  public:
    explicit CTransferPool(const CTransferTimes& times) : m_times(times) {}

    /** As CTransferLine::Run; wasLost as its WasLost. Any thread. */
    [[nodiscard]] CResult<CTransferAnswer> Run(const CTransferRequest& request, CTransferWatcher& watcher,
                                               bool& wasLost);
    /** Ends all running requests at once, and all later ones. Any thread. */
    void Stop();

  private:
    [[nodiscard]] CTransferLine& Take();
    void GiveBack(const CTransferLine& line);

    struct CEntry {
        std::unique_ptr<CTransferLine> line;
        bool isTaken = false;
    };
    CTransferTimes m_times;
    std::mutex m_mutex;
    std::vector<CEntry> m_entries;  ///< guarded, with the next
    bool m_isStopped = false;
};
