// SPDX-License-Identifier: MIT
#include "engine/plan/CFollowedEdit.h"

#include <algorithm>
#include <utility>

bool CFollowedEdit::IsOfLast(const CStillScene& still, std::size_t materials) const {
    return m_materials.size() == materials && m_still == still;
}

void CFollowedEdit::Remember(CStillScene still, const std::vector<CPreparedMaterial>& materials) {
    Forget();
    m_still = std::move(still);
    m_materials = materials;
}

std::vector<bool> CFollowedEdit::TakeChanges(const std::vector<CPreparedMaterial>& materials) {
    std::vector<bool> changes(materials.size());
    for (std::size_t i = 0; i < materials.size(); ++i) {
        if (m_materials[i] == materials[i]) continue;
        changes[i] = true;
        m_materials[i] = materials[i];
    }
    return changes;
}

bool CFollowedEdit::OnlyThoseChanged(const std::vector<CPreparedMaterial>& materials) const {
    for (std::size_t i = 0; i < materials.size(); ++i) {
        if (!m_changes[i] && m_kept[i] != materials[i]) return false;
    }
    return true;
}

CFollowedEdit::EPicture CFollowedEdit::Next(CStillScene still,
                                            const std::vector<CPreparedMaterial>& materials) {
    if (!IsOfLast(still, materials.size())) {
        Remember(std::move(still), materials);
        return EPicture::Whole;
    }
    std::vector<bool> changes = TakeChanges(materials);
    if (m_isKept && OnlyThoseChanged(materials)) return EPicture::OnRestKept;
    m_isKept = false;
    m_changes = std::move(changes);
    const bool any = std::find(m_changes.begin(), m_changes.end(), true) != m_changes.end();
    return any ? EPicture::KeepsRest : EPicture::Whole;
}

void CFollowedEdit::SetKept(bool isCoarse) {
    m_isKept = true;
    m_isCoarse = isCoarse;
    m_kept = m_materials;
}

void CFollowedEdit::Rested(CStillScene still, const std::vector<CPreparedMaterial>& materials) {
    if (!IsOfLast(still, materials.size())) return Remember(std::move(still), materials);
    (void)TakeChanges(materials);
    m_isKept = m_isKept && !m_isCoarse && OnlyThoseChanged(materials);
}
