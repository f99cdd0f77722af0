// SPDX-License-Identifier: MIT
#include "modeldb/server/http/CHttpShared.h"

#include <algorithm>

void CHttpMeters::CountAnswer(int status, std::chrono::steady_clock::duration time) {
    m_answers[std::min<std::size_t>(static_cast<std::size_t>(status) / 100, m_answers.size() - 1)].fetch_add(
        1);
    const auto& bounds = CHttpCounters::kSecondsBounds;
    const double seconds = std::chrono::duration<double>(time).count();
    const auto bucket = std::ranges::lower_bound(bounds, seconds) - bounds.begin();
    m_secondsCounts[static_cast<std::size_t>(bucket)].fetch_add(1);
    m_nanoseconds.fetch_add(
        static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(time).count()));
}

CHttpCounters CHttpMeters::Read() const {
    CHttpCounters read;
    std::ranges::copy(m_answers, read.answers.begin());
    std::ranges::copy(m_secondsCounts, read.secondsCounts.begin());
    read.secondsSum = static_cast<double>(m_nanoseconds.load()) / 1e9;
    read.receivedBytes = receivedBytes;
    read.sentBytes = sentBytes;
    read.connections = connections;
    read.openConnections = openConnections;
    read.waitingRequests = waitingRequests;
    read.refusedConnections = refusedConnections;
    read.refusedPeers = refusedPeers;
    read.refusedBusy = refusedBusy;
    read.malformed = malformed;
    read.timedOut = timedOut;
    read.faults = faults;
    read.acceptPauses = acceptPauses;
    return read;
}

void CHttpShared::ConnectionOpened() {
    meters.openConnections.fetch_add(1);
}

void CHttpShared::ConnectionClosed() {
    if (meters.openConnections.fetch_sub(1) != 1 || !stopping) return;
    const std::lock_guard lock(m_lock);
    m_closed.notify_all();
}

void CHttpShared::WaitForNone(std::chrono::duration<double> most) {
    std::unique_lock lock(m_lock);
    m_closed.wait_for(lock, most, [&] { return meters.openConnections == 0; });
}
