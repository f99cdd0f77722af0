// SPDX-License-Identifier: MIT
#include "modeldb/client/CProgressUnits.h"

#include <algorithm>

void CProgressUnits::Start(std::uint64_t units) {
    m_total = std::clamp<std::uint64_t>(units, 1, kMostUnits);
    if (m_progress != nullptr) m_progress->OnProgressStart(static_cast<std::int64_t>(m_total));
}

void CProgressUnits::StartBytes(std::uint64_t bytes) {
    Start((bytes + kUnitBytes - 1) / kUnitBytes);
}

bool CProgressUnits::StepTo(std::uint64_t units) {
    for (; m_done < std::min(units, m_total); ++m_done) {
        if (!DoContinue()) return false;
        if (m_progress != nullptr) m_progress->OnProgressStep();
    }
    return true;
}

void CProgressUnits::EndPart(std::uint64_t bytes) {
    m_partsBytes += bytes;
}

void CProgressUnits::Finish() {
    for (; m_done < m_total; ++m_done)
        if (m_progress != nullptr) m_progress->OnProgressStep();
}
