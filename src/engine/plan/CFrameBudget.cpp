// SPDX-License-Identifier: MIT
#include "engine/plan/CFrameBudget.h"

#include <algorithm>

void CFrameBudget::Learn(double cost, double ms) {
    constexpr double kTellsNothing = 1000;
    if (cost < kTellsNothing) return;
    const double seen = std::clamp((ms - kFixedMs) / cost, kQuickest, kSlowest);
    const double weight = seen > m_msPerCost ? 0.5 : 0.1;
    m_msPerCost += (seen - m_msPerCost) * weight;
}
