// SPDX-License-Identifier: MIT
#include "engine/plan/CMovingReduction.h"

#include <algorithm>

#include "engine/plan/CFrameBudget.h"

namespace {

/** Soon, as a frame may have ended because the driver compiled something. */
constexpr int kEarlyFrames = 8;
/** Half the divisor has four times as many pixels. */
constexpr double kEarlyMs = CFrameBudget::kPatientMs / 4;

}  // namespace

void CMovingReduction::Learn(bool ended, double ms) {
    if (ended) m_divisor = std::min(m_divisor * 2, kMost);
    m_early = !ended && ms < kEarlyMs ? m_early + 1 : 0;
    if (m_early < kEarlyFrames) return;
    m_divisor = std::max(m_divisor / 2, 1);
    m_early = 0;
}
