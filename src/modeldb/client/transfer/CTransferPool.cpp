// SPDX-License-Identifier: MIT
#include "modeldb/client/transfer/CTransferPool.h"

#include <algorithm>

CTransferLine& CTransferPool::Take() {
    const std::lock_guard lock(m_mutex);
    auto resting = std::ranges::find(m_entries, false, &CEntry::isTaken);
    if (resting == m_entries.end()) {
        m_entries.push_back({std::make_unique<CTransferLine>(m_times), false});
        resting = m_entries.end() - 1;
        if (m_isStopped) resting->line->Stop();
    }
    resting->isTaken = true;
    return *resting->line;
}

void CTransferPool::GiveBack(const CTransferLine& line) {
    const std::lock_guard lock(m_mutex);
    for (CEntry& entry : m_entries)
        if (entry.line.get() == &line) entry.isTaken = false;
}

CResult<CTransferAnswer> CTransferPool::Run(const CTransferRequest& request, CTransferWatcher& watcher,
                                            bool& wasLost) {
    CTransferLine& line = Take();
    CResult<CTransferAnswer> answer = line.Run(request, watcher);
    wasLost = line.WasLost();
    GiveBack(line);
    return answer;
}

void CTransferPool::Stop() {
    const std::lock_guard lock(m_mutex);
    m_isStopped = true;
    for (const CEntry& entry : m_entries) entry.line->Stop();
}
