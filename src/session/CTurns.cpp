// SPDX-License-Identifier: MIT
#include "session/CTurns.h"

#include <utility>

void CTurns::Keep(std::function<void()> work) {
    m_waiting = std::move(work);
}

bool CTurns::MayClose(std::function<void()> close) {
    if (!IsHeld()) return true;
    m_close = std::move(close);
    return false;
}

void CTurns::RunWaiting() {
    if (IsHeld()) return;
    const auto close = std::exchange(m_close, nullptr);
    const auto work = std::exchange(m_waiting, nullptr);
    if (close)
        close();
    else if (work)
        work();
}

void CTurns::Release() {
    if (--m_holds == 0 && (m_waiting || m_close)) m_wake();
}
