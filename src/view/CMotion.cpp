// SPDX-License-Identifier: MIT
#include "view/CMotion.h"

#include <algorithm>

void CMotion::Drawn(EDrawn how, CTime now) {
    m_owes = how != EDrawn::Whole;
    m_isToBeShown = false;
    if (how == EDrawn::Interrupted) m_stillFrom = now + kStill;
}

std::optional<std::chrono::milliseconds> CMotion::DueIn(CTime now) const {
    if (!m_owes || m_isRunning) return std::nullopt;
    return std::max(std::chrono::milliseconds(0),
                    std::chrono::ceil<std::chrono::milliseconds>(m_stillFrom - now));
}
