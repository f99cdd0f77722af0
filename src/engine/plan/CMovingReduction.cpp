// SPDX-License-Identifier: MIT
#include "engine/plan/CMovingReduction.h"

#include <algorithm>

#include "engine/plan/CFrameBudget.h"

namespace {

// One frame may end as the driver has compiled something.
constexpr int kLateFrames = 2;
constexpr int kEarlyFrames = 8;
/** Half the divisor has four times as many pixels. */
constexpr double kEarlyMs = CFrameBudget::kPatientMs / 4;

}  // namespace

void CMovingReduction::Learn(bool ended, double ms) {
    m_late = ended ? m_late + 1 : 0;
    m_early = ms < kEarlyMs ? m_early + 1 : 0;
    if (m_late == kLateFrames) {
        m_divisor = std::min(m_divisor * 2, kMost);
        m_late = 0;
    } else if (m_early == kEarlyFrames) {
        m_divisor = std::max(m_divisor / 2, 1);
        m_early = 0;
    }
}
