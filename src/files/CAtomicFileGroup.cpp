// SPDX-License-Identifier: MIT
#include "files/CAtomicFileGroup.h"

#include <cerrno>
#include <utility>

#include "files/system_error.h"

CStatus CAtomicFileGroup::Add(CAtomicFile file) {
    CStatus status = CDone{};
    if (m_members.size() >= kMostOpen) status = file.Rest(false);
    if (status) m_members.push_back(std::move(file));
    return status;
}

CStatus CAtomicFileGroup::Commit() {
    const bool isLarge = m_members.size() > kMostOpen;
    if (isLarge) {
        for (CAtomicFile& member : m_members) {
            if (CStatus rested = member.Rest(false); !rested) return rested;
        }
        // At once for all, as a disk may take milliseconds for each; the last may be elsewhere, by a link.
        if (!m_members.front().SyncFileSystem() || !m_members.back().SyncFileSystem())
            return CError{EErrorCode::WriteFailed, SystemErrorText(errno), {}};
    }
    for (CAtomicFile& member : m_members) {
        if (CStatus placed = member.Place(!isLarge); !placed) {
            for (CAtomicFile& before : m_members) before.TakeBack();
            return placed;
        }
    }
    if (!m_members.empty()) m_members.front().SyncFolder();
    if (m_members.size() > 1) m_members.back().SyncFolder();
    m_members.clear();  // and what they replaced
    return CDone{};
}
